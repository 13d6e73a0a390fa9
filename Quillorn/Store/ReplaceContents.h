#pragma once

namespace quillorn {

class ModelContainer;

/// Makes `live` hold exactly what `source` holds, in one transaction; throws StoreError, then nothing is changed.
///
/// Both containers have the current schema. Ids, dates and all other columns stay as they are, and relations lead to
/// the copies of the same records. Row keys are new: no object or key that somebody holds of `live` can come to mean
/// another record. A reference to a row that `source` does not have stays empty. Whoever
/// follows the store learns that everything has changed.
void replaceStoreContents(ModelContainer& source, ModelContainer& live);

} // namespace quillorn
