#pragma once

namespace quillorn {

class JsonWriter;
struct RecordType;

/// What openapi.json says of a record, as an object: its properties, in the order of their declaration, and the names
/// of those that are required.
void writeSchema(JsonWriter& writer, const RecordType& type);

} // namespace quillorn
