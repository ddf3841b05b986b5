#include <Host/Program.h>

#include <Host/CommandLineJob.h>
#include <Host/Error.h>
#include <Host/FailureText.h>
#include <Host/JobLine.h>
#include <Host/JobRunner.h>
#include <Host/Names.h>
#include <Host/Pictures/PictureFiles.h>
#include <Host/RegionTeacher.h>
#include <Host/ResultFiles.h>
#include <Host/ResultTable.h>
#include <Host/TextTable.h>
#include <Host/ToolDescription.h>
#include <Host/WholeFile.h>

#include <TaApi/Logging.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <ostream>
#include <sys/stat.h>
#include <system_error>

namespace Mu::Host
{
namespace
{
namespace fs = std::filesystem;

constexpr const char* examples = R"(Examples:
  tlk list
  tlk inspect SurfaceHeight
  tlk run Examples/Jobs/plate.json
  tlk run SurfaceHeight scan.x3p --limits Mean=-0.05:0.05 --csv results.csv
  tlk run Examples/Jobs/cylinder.json --picture cylinder.png
  tlk teach job.json scan.x3p

Exit codes: 0 all decisions passed; 1 a measurement is outside its limits, or has limits but no value;
2 bad use, or a bad job, scan, parameter or plug-in: one message says what, and no file is left half-written.)";

constexpr const char* runNotes =
    R"(A scan is a TIFF or PNG image, an X3P file, a PLY or PCD point cloud, or a text of numbers (with spacing or unit in
SCAN.json).
A parameter's value is JSON if it reads as JSON, else a text; keys of groups are joined by slashes:
  tlk run TOOL SCAN --param Region/width=12.5 --param 'Name="7"'
With "-" as file, JSON or CSV goes to the terminal instead of the table.
A picture shows the scan with axes, all graphics of the tools, and the measurements; its file ends in .png, .svg or
.pdf. Of several scans each has a picture of its own: out.png becomes out-1-NAME.png and so on.)";

constexpr const char* teachNotes =
    R"(The job gives the regions as they are drawn on SCAN, in its coordinates, as if no anchor were routed. They are
made relative to the anchors that the job's tools give on SCAN, and written back into JOB, with their transforms; all
else in it stays. "tlk run JOB" then measures in these regions on SCAN, and moves them along on other scans.
Regions that were taught before are refused. To draw them anew, write their values in coordinates of the scan and take
their transformMatrix out, or take the regions out for defaults, and teach again.)";

/// Standard output, where a file name is asked for.
constexpr const char* terminal = "-";

struct Options
{
    std::vector<std::string> toolFolders;
    std::string inspected;
    std::string subject;
    std::string taughtJob;
    std::string taughtScan;
    CommandLineJob words;
    std::string jsonFile;
    std::string csvFile;
    std::string pictureFile;
    bool asJson = false;
    bool verbose = false;
};

/// Shows what tools log, on `err`, as long as it lives.
class LogLines
{
public:
    explicit LogLines(std::ostream& err)
        : former(Ta::Logging::SetLogHandler({&LogLines::Write, &err}))
    {
    }

    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    ~LogLines()
    {
        Ta::Logging::SetLogHandler(former);
    }

private:
    static zStatus Write(const Ta::Logging::LogRecord& record, void* context)
    {
        using namespace Ta::Logging;
        // A refused parameter is raised as well, with its path: that message is the better one.
        if (record.level == LEVEL_ERROR && std::string_view(record.source) == "Params validation")
        {
            return zOK;
        }
        const char* const level = record.level == LEVEL_ERROR     ? "error"
                                  : record.level == LEVEL_WARNING ? "warning"
                                                                  : "information";
        *static_cast<std::ostream*>(context)
            << fmt::format("{}: {}: {}\n", level, TerminalText(record.source), TerminalText(record.text));
        return zOK;
    }

    Ta::Logging::LogHandler former;
};

fs::path ProgramFolder(const std::string& programName)
{
    std::error_code failure;
    const fs::path self = fs::read_symlink("/proc/self/exe", failure);
    return failure ? fs::absolute(programName).parent_path() : self.parent_path();
}

/// Files, each known by whatever name it is called.
class FileSet
{
public:
    /// Adds a file. If it is in the set already, the name by which it came in.
    [[nodiscard]] std::optional<fs::path> Add(const fs::path& file)
    {
        std::optional<fs::path> former;
        for (const std::string& key : KeysOf(file))
        {
            const auto [entry, isNew] = names.try_emplace(key, file);
            former = isNew ? former : entry->second;
        }
        return former;
    }

private:
    /// A file that is not there yet has but its name.
    static std::vector<std::string> KeysOf(const fs::path& file)
    {
        std::error_code ignored;
        const fs::path canonical = fs::weakly_canonical(fs::absolute(file), ignored);
        std::vector<std::string> keys{canonical.empty() ? file.string() : canonical.string()};
        struct stat status
        {
        };
        if (stat(file.c_str(), &status) == 0)
        {
            keys.push_back(fmt::format("{}:{}", status.st_dev, status.st_ino));
        }
        return keys;
    }

    std::map<std::string, fs::path> names;
};

/// True while code of plug-ins runs.
std::atomic<bool> toolsAtWork{false};

/// A tool that ends the program would else end it with "all decisions passed".
void ReportEarlyEnd()
{
    if (toolsAtWork)
    {
        constexpr std::string_view message = "tlk: a tool ended the program; there are no results. Mend the tool.\n";
        static_cast<void>(!write(STDERR_FILENO, message.data(), message.size()));
        _exit(static_cast<int>(ExitCode::BadInput));
    }
}

/// Calls what runs code of plug-ins.
template <typename Call>
auto Guarded(const Call& call)
{
    static const int registered = std::atexit(ReportEarlyEnd);
    static_cast<void>(registered);
    struct AtWork
    {
        AtWork()
        {
            toolsAtWork = true;
        }

        ~AtWork()
        {
            toolsAtWork = false;
        }
    } const atWork;
    return call();
}

class Program
{
public:
    Program(const std::vector<std::string>& words, std::ostream& results, std::ostream& messages)
        : arguments(words)
        , out(results)
        , err(messages)
    {
    }

    ExitCode Run()
    {
        CLI::App app("Runs measurement tools on scans.", "tlk");
        Describe(app);
        std::vector<const char*> words;
        std::ranges::transform(arguments, std::back_inserter(words), [](const auto& word) { return word.c_str(); });
        try
        {
            app.parse(static_cast<int>(words.size()), words.data());
        }
        catch (const CLI::ParseError& end)
        {
            return EndOf(app, end);
        }
        return Act(app);
    }

private:
    /// Help and version are no failures. A word that is no command is not named by the parser.
    ExitCode EndOf(const CLI::App& app, const CLI::ParseError& end)
    {
        const auto unknown = app.remaining();
        if (app.get_subcommands().empty() && end.get_exit_code() != 0 && !unknown.empty())
        {
            std::vector<std::string> known;
            std::ranges::transform(app.get_subcommands({}), std::back_inserter(known), &CLI::App::get_name);
            err << fmt::format("tlk: command line: there is no command or option {}. {}. Run with --help for more.\n",
                               Quoted(unknown.front()), KnownNames(unknown.front(), known));
            return ExitCode::BadInput;
        }
        return app.exit(end, out, err) == 0 ? ExitCode::Passed : ExitCode::BadInput;
    }

    void Describe(CLI::App& app)
    {
        app.set_version_flag("--version", "tlk " MU_VERSION);
        app.require_subcommand(1);
        app.fallthrough();
        app.footer(examples);
        app.add_option("--tools", options.toolFolders, "Folder with plug-ins, instead of the program's own; repeatable")
            ->type_name("DIR")
            ->allow_extra_args(false);
        auto* const list = app.add_subcommand("list", "Shows the tools at hand");
        list->add_flag("--json", options.asJson, "As JSON");
        auto* const inspect = app.add_subcommand("inspect", "Shows inputs, outputs, actions and parameters of a tool");
        inspect->add_option("TOOL", options.inspected, "Type of the tool")->required();
        inspect->add_flag("--json", options.asJson, "As JSON");
        DescribeRun(*app.add_subcommand("run", "Runs a job, or one tool on scans"));
        auto* const teach =
            app.add_subcommand("teach", "Makes a job's regions follow their anchors, from where they are");
        teach->footer(teachNotes);
        teach->add_option("JOB", options.taughtJob, "Job file, which is written anew")->required();
        teach->add_option("SCAN", options.taughtScan, "Scan on which the regions are drawn")->required();
    }

    void DescribeRun(CLI::App& run)
    {
        run.footer(runNotes);
        run.add_option("JOB|TOOL", options.subject, "Job file, or type of a tool")->required();
        run.add_option("SCAN", options.words.scans, "Scans for the tool");
        const auto addList = [&run](const char* name, std::vector<std::string>& words, const char* help,
                                    const char* form) {
            run.add_option(name, words, help)->type_name(form)->allow_extra_args(false);
        };
        addList("--param", options.words.parameters, "Parameter of the tool; repeatable", "KEY=VALUE");
        addList("--limits", options.words.limits, "Decision limits of an output; repeatable", "OUTPUT=LOW:HIGH");
        const auto addFile = [&run](const char* name, std::string& file, const char* help) {
            const auto named = [](const std::string& word) {
                return word.empty() ? std::string("the name of the file is empty") : std::string();
            };
            run.add_option(name, file, help)->type_name("FILE")->check(CLI::Validator(named, ""));
        };
        addFile("--json", options.jsonFile, "Write the results as JSON");
        addFile("--csv", options.csvFile, "Write the results as comma-separated values");
        addFile("--picture", options.pictureFile, "Draw scan, graphics and results as PNG, SVG or PDF");
        run.add_flag("--verbose", options.verbose, "Show what the scan reader notes");
    }

    ExitCode Act(const CLI::App& app)
    {
        const LogLines logLines(err);
        try
        {
            ToolRegistry registry(MU_VERSION);
            AddTools(registry);
            const ExitCode code = app.got_subcommand("list")      ? List(registry)
                                  : app.got_subcommand("inspect") ? Inspect(registry)
                                  : app.got_subcommand("teach")   ? Teach(registry)
                                                                  : RunJobs(registry);
            if (!out.flush())
            {
                throw Error("The results cannot be written to the terminal. Check where they go.");
            }
            return code;
        }
        catch (...)
        {
            // Errors tell all there is to say; anything else is no more than its text.
            err << "tlk: " << TerminalText(CurrentFailureText()) << '\n';
            return ExitCode::BadInput;
        }
    }

    void AddTools(ToolRegistry& registry)
    {
        std::vector<fs::path> folders(options.toolFolders.begin(), options.toolFolders.end());
        if (folders.empty())
        {
            folders = StandardToolFolders(ProgramFolder(arguments.empty() ? "tlk" : arguments[0]));
        }
        for (const fs::path& folder : folders)
        {
            registry.AddFolder(folder);
        }
        for (const std::string& failure : registry.Failures())
        {
            err << "tlk: " << TerminalText(failure) << '\n';
        }
    }

    ExitCode List(const ToolRegistry& registry)
    {
        out << (options.asJson ? Dumped(ToolListJson(registry)) : ToolListText(registry));
        return registry.Failures().empty() ? ExitCode::Passed : ExitCode::BadInput;
    }

    ExitCode Inspect(const ToolRegistry& registry)
    {
        const ToolType& type = FindType(registry, options.inspected, {"command line", "inspect"});
        out << (options.asJson ? Dumped(ToolJson(type)) : ToolText(type));
        return ExitCode::Passed;
    }

    /// A word that is no tool at hand is a job if there is such a file, or if it looks like one.
    bool IsJob(const ToolRegistry& registry) const
    {
        const fs::path file(options.subject);
        std::error_code ignored;
        return registry.Find(options.subject) == nullptr &&
               (fs::exists(file, ignored) || file.has_extension() || file.has_parent_path());
    }

    Job JobOfWords(const ToolRegistry& registry)
    {
        const JobPlace place{"command line", "run"};
        if (IsJob(registry))
        {
            if (!options.words.scans.empty() || !options.words.parameters.empty() || !options.words.limits.empty())
            {
                place.Fail("a job tells its scans, parameters and limits itself",
                           "Write them into the job, or give a tool in place of the job");
            }
            return ReadJob(options.subject);
        }
        options.words.tool = FindType(registry, options.subject, place).Name();
        if (options.words.scans.empty())
        {
            place.Fail("there is no scan for the tool", "Name one scan or more behind the tool");
        }
        return MakeJob(options.words);
    }

    /// The pictures of a run. They are held until all has gone well.
    struct Pictures
    {
        /// Nobody looks on if no pictures are asked for.
        [[nodiscard]] ScanObserver Observer()
        {
            if (files.empty())
            {
                return {};
            }
            return [this](const ExecutedScan& executed) { drawn.push_back(PictureOf(executed, format)); };
        }

        PictureFormat format = PictureFormat::Png;
        std::vector<fs::path> files;
        std::vector<std::string> drawn;
    };

    static JobPlace PlaceOfPictures()
    {
        return {"command line", "--picture"};
    }

    Pictures FormatOfPictures() const
    {
        Pictures pictures;
        if (!options.pictureFile.empty())
        {
            pictures.format = PictureFormatOf(options.pictureFile, PlaceOfPictures());
        }
        return pictures;
    }

    std::vector<fs::path> FilesOfPictures(const Job& job) const
    {
        return options.pictureFile.empty() ? std::vector<fs::path>()
                                           : PictureFiles(options.pictureFile, job.scans, PlaceOfPictures());
    }

    ExitCode RunJobs(const ToolRegistry& registry)
    {
        const bool jsonShown = options.jsonFile == terminal;
        const bool csvShown = options.csvFile == terminal;
        if (jsonShown && csvShown)
        {
            JobPlace{"command line", "run"}.Fail("JSON and CSV cannot both go to the terminal",
                                                 "Write one of them into a file");
        }
        Pictures pictures = FormatOfPictures();
        const Job job = JobOfWords(registry);
        pictures.files = FilesOfPictures(job);
        CheckResultFiles(job, pictures.files);
        const RunResult run = Guarded([&] { return RunJob(job, registry, pictures.Observer()); });
        const std::string json = options.jsonFile.empty() ? "" : Dumped(ResultJson(run));
        const std::string csv = options.csvFile.empty() ? "" : ResultCsv(run);
        for (std::size_t i = 0; i < pictures.files.size(); ++i)
        {
            WriteWholeFile(pictures.files[i], pictures.drawn[i]);
        }
        Deliver(options.jsonFile, json);
        Deliver(options.csvFile, csv);
        if (!jsonShown && !csvShown)
        {
            out << ResultTable(run, options.verbose ? Notes::Whole : Notes::Count);
        }
        return HasPassed(run) ? ExitCode::Passed : ExitCode::Failed;
    }

    ExitCode Teach(const ToolRegistry& registry)
    {
        const fs::path file(options.taughtJob);
        std::error_code ignored;
        if (fs::is_regular_file(file, ignored) && access(file.c_str(), W_OK) != 0)
        {
            throw Error(file, "", "the job cannot be written", "Check its access rights");
        }
        const TaughtJob taught = Guarded([&] { return TeachRegions(file, options.taughtScan, registry); });
        WriteWholeFile(file, taught.text);
        out << TaughtTable(taught)
            << fmt::format("Written to {}: these values are relative to the anchors now. Do not teach them again.\n",
                           TerminalText(file.string()));
        if (!out.flush())
        {
            throw Error(fmt::format("{} is written and its regions are relative to the anchors now; only this table of "
                                    "them cannot be written to the terminal. Do not teach it again.",
                                    file.string()));
        }
        return ExitCode::Passed;
    }

    /// Results may not take the place of what they are made from, nor of each other.
    void CheckResultFiles(const Job& job, const std::vector<fs::path>& pictures) const
    {
        FileSet taken;
        static_cast<void>(taken.Add(options.subject));
        for (const ScanSetup& scan : job.scans)
        {
            static_cast<void>(taken.Add(scan.file));
            static_cast<void>(taken.Add(scan.file.string() + ".json"));
        }
        std::vector<fs::path> results = pictures;
        for (const std::string& file : {options.jsonFile, options.csvFile})
        {
            if (!file.empty() && file != terminal)
            {
                results.emplace_back(file);
            }
        }
        for (const fs::path& file : results)
        {
            if (const auto other = taken.Add(file))
            {
                JobPlace{"command line", "run"}.Fail(
                    fmt::format("the results would take the place of {}", Quoted(other->string())),
                    "Give the results a file of their own");
            }
        }
    }

    void Deliver(const std::string& file, const std::string& text)
    {
        if (file == terminal)
        {
            out << text;
        }
        else if (!file.empty())
        {
            WriteWholeFile(file, text);
        }
    }

    const std::vector<std::string>& arguments;
    std::ostream& out;
    std::ostream& err;
    Options options;
};
} // namespace

ExitCode RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    return Program(arguments, out, err).Run();
}
} // namespace Mu::Host
