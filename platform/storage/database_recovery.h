#pragma once

#include <functional>
#include <string>

namespace QvPlatform::detail {

/// Brings a database to rest that CheckLeftJournal refuses, or that was simply interrupted: a
/// container by its path, or the table files of a folder.
///   - A change over several files that was interrupted while the folder lay elsewhere is taken
///   back
///     in all of them, if its super-journal has come along or a file was not written to its end;
///     otherwise it was finished, and its journals go.
///   - A journal that fits no file is set aside, and so is a log beside a file that has none.
///   - An interrupted change in one file is taken back as any opening would.
///   - A super-journal for which no journal waits any more is removed.
/// Each step is told in a whole sentence. It can be interrupted at any moment and run again. Throws
/// StorageError, also where another program has one of the files open.
void RecoverDatabase(const std::string& path, const std::function<void(const std::string&)>& tell);

}  // namespace QvPlatform::detail
