#include <Host/Pictures/PictureFiles.h>

#include <Host/Error.h>
#include <Host/JobLine.h>
#include <Host/Pictures/Picture.h>

#include <TaVision/TvRenderingMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace Mu::Host
{
namespace
{
struct Ending
{
    std::string_view text;
    PictureFormat format;
};

constexpr std::array endings{Ending{".png", PictureFormat::Png}, Ending{".svg", PictureFormat::Svg},
                             Ending{".pdf", PictureFormat::Pdf}};

std::string InLowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

bool IsPlain(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
           c == '_';
}

std::string PlainName(const std::filesystem::path& scan)
{
    constexpr std::size_t longest = 60;
    std::string name = scan.stem().string().substr(0, longest);
    std::ranges::replace_if(
        name, [](char c) { return !IsPlain(c); }, '_');
    return name;
}
} // namespace

PictureFormat PictureFormatOf(const std::filesystem::path& file, const JobPlace& place)
{
    if (file == "-")
    {
        place.Fail("a picture cannot go to the terminal", "Name a file that ends in .png, .svg or .pdf");
    }
    const auto* const ending = std::ranges::find(endings, InLowerCase(file.extension().string()), &Ending::text);
    if (ending == endings.end())
    {
        place.Fail(fmt::format("{} has no ending that names a format of pictures", Quoted(file.string())),
                   "Name a file that ends in .png, .svg or .pdf");
    }
    return ending->format;
}

std::vector<std::filesystem::path> PictureFiles(const std::filesystem::path& file, const std::vector<ScanSetup>& scans,
                                                const JobPlace& place)
{
    if (scans.size() == 1)
    {
        return {file};
    }
    if (scans.size() > mostPictures)
    {
        place.Fail(fmt::format("there are {} scans, and a run draws at most {} pictures", scans.size(), mostPictures),
                   "Run fewer scans at a time, or leave the pictures out");
    }
    const std::size_t digits = std::to_string(scans.size()).size();
    std::vector<std::filesystem::path> files;
    for (std::size_t i = 0; i < scans.size(); ++i)
    {
        const std::string name = fmt::format("{}-{:0{}}-{}{}", file.stem().string(), i + 1, digits,
                                             PlainName(scans[i].file), file.extension().string());
        files.push_back(file.parent_path() / name);
    }
    return files;
}

std::string PictureOf(const ExecutedScan& executed, PictureFormat format)
{
    const std::vector<Ta::Object<void*>> renderings = executed.line.Renderings();
    PictureContent content{executed.message.Get(), {}, &executed.result};
    for (const Ta::Object<void*>& rendering : renderings)
    {
        content.graphics.push_back(TvRenderingMsg_Rendering(rendering.Get()));
    }
    return DrawPicture(content, format);
}
} // namespace Mu::Host
