#pragma once

namespace quillorn {

/// Makes of what hinders the program's output an error of the call that meets it, and nothing else: not a signal that
/// ends the process, when a file is full or a reader gone, nor text in a file that got the number of a closed stream.
/// To be called first.
void prepareStandardStreams();

/// Sends what was printed on its way. False when part of it, since the start, could not be.
bool flushStandardStreams();

} // namespace quillorn
