#pragma once

#include <zApi/zTypes.h>

#include <string>
#include <vector>

namespace TaCommon
{
/// The host's store of files, as a handler meets it in the host's callbacks. A file is a name and its bytes.
///
/// A name is a path with '/' between its components; one '/' in front is the root and may be left out, so "/a/b" and
/// "a/b" are the same file. Names are compared byte by byte. A folder is there if a file lies in it, and "" or "/" is
/// the root; one '/' behind a folder may be left out. A component that is empty, "." or "..", or that holds a
/// backslash or a control character, names nothing: such a name is in no list, and to read, write or delete it raises
/// -997. A failure of the store's own is raised too.
class MU_PLATFORM_EXPORT IPersistStore
{
public:
    /// The names of the files in `folder`, in bytewise order, without the folder. With `recursive`, those in the
    /// folders below it too, by their path from `folder`, without '/' in front. Empty if there is no such folder.
    [[nodiscard]] virtual std::vector<std::string> List(const std::string& folder, bool recursive) const = 0;

    /// The bytes of a file. @throws Ta::Exception -999 if there is no such file, -997 for a bad name
    [[nodiscard]] virtual std::vector<z8u> Read(const std::string& name) const = 0;

    /// Writes a file of `size` bytes, in place of one of that name; null and 0 make an empty one.
    /// @throws Ta::Exception -999 if `data` is null and `size` is not 0, -997 for a bad name
    virtual void Write(const std::string& name, const void* data, std::size_t size) = 0;

    /// Removes a file. One that is not there is no error. @throws Ta::Exception -997 for a bad name
    virtual void Delete(const std::string& name) = 0;

    /// True if there is a file of that name.
    [[nodiscard]] virtual bool Exists(const std::string& name) const = 0;

protected:
    ~IPersistStore() = default;
};
} // namespace TaCommon
