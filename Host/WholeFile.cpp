#include <Host/WholeFile.h>

#include <Host/Error.h>

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace Mu::Host
{
namespace
{
/// A file beside the target that is gone again unless it took the target's place.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::filesystem::path& beside)
        : target(beside)
        , name(beside.string() + ".XXXXXX")
        , descriptor(mkstemp(name.data()))
    {
        if (descriptor < 0)
        {
            Fail("no file can be made beside it");
        }
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile()
    {
        if (descriptor >= 0)
        {
            close(descriptor);
            unlink(name.c_str());
        }
    }

    void Write(std::string_view bytes)
    {
        while (!bytes.empty())
        {
            const ssize_t written = write(descriptor, bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR)
            {
                continue;
            }
            if (written <= 0)
            {
                Fail("it cannot be written");
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void TakePlace()
    {
        if (fchmod(descriptor, Rights()) != 0 || fsync(descriptor) != 0)
        {
            Fail("it cannot be written");
        }
        if (std::rename(name.c_str(), target.c_str()) != 0)
        {
            Fail("it cannot be put in place");
        }
        close(descriptor);
        descriptor = -1;
    }

private:
    // A temporary file is for its owner only; the result keeps the rights of the file whose place it takes, or gets
    // those of any new file.
    [[nodiscard]] mode_t Rights() const
    {
        struct stat former
        {
        };
        if (stat(target.c_str(), &former) == 0)
        {
            return former.st_mode & 0777U;
        }
        const mode_t mask = umask(0);
        umask(mask);
        return 0666U & ~mask;
    }

    [[noreturn]] void Fail(const std::string& problem) const
    {
        const std::string reason = std::generic_category().message(errno);
        throw Error(target, "", problem + " (" + reason + ")",
                    "Check the folder, its access rights and the space left");
    }

    std::filesystem::path target;
    std::string name;
    int descriptor;
};
} // namespace

void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes)
{
    std::error_code failure;
    const std::filesystem::path target = std::filesystem::weakly_canonical(file, failure);
    const auto kind = std::filesystem::status(file, failure).type();
    if (kind != std::filesystem::file_type::regular && kind != std::filesystem::file_type::not_found)
    {
        throw Error(file, "", "this is something other than a file", "Give the name of a file, or - for the terminal");
    }
    TemporaryFile temporary(target.empty() ? file : target);
    temporary.Write(bytes);
    temporary.TakePlace();
}
} // namespace Mu::Host
