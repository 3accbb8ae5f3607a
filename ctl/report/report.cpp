#include "ctl/report/report.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "ctl/log/log_commands.h"
#include "ctl/log/log_paths.h"
#include "ctl/output_file.h"
#include "ctl/paths.h"
#include "ctl/report/zip_writer.h"

namespace zelt::ctl {
namespace {

namespace fs = std::filesystem;

// A folder that holds the texts until the report is written or refused.
class TextFolder {
public:
    TextFolder()
    {
        std::random_device random;
        std::error_code error;
        path = fs::temp_directory_path(error) / ("zelt-report-" + std::to_string(random()));
        // A folder that already exists is refused: somebody else may have put something into it.
        if (error || !fs::create_directory(path, error)) throw Refusal("no folder can be made for the texts");
    }
    ~TextFolder()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    TextFolder(const TextFolder&) = delete;
    TextFolder& operator=(const TextFolder&) = delete;

    fs::path Of(const std::string& name) const { return path / PathOf(name); }
    std::string Utf8() const { return Utf8Of(path); }

private:
    fs::path path;
};

struct Content {
    std::string name, what;
    std::uintmax_t size;
};

// A log gets a new name, because its own is often the name of the package.
std::string NameInReport(std::size_t number, std::size_t logs)
{
    return logs == 1 ? std::string("log.zlg") : "log-" + std::to_string(number + 1) + ".zlg";
}

class Report {
public:
    // Returns the exit code for the log.
    int AddLog(const Arguments& arguments, const std::string& log, const std::string& name, Output& messages)
    {
        OutputFile file(Utf8Of(folder.Of(name)));
        Streams own = {file.Data(), messages};
        const int code = RedactLog(arguments, log, own);
        file.Keep();
        Contain(name, "redacted from " + NameOfLog(log));
        return code;
    }
    void AddText(const ReportText& text)
    {
        OutputFile file(Utf8Of(folder.Of(text.name)));
        file.Data() << text.text;
        file.Keep();
        Contain(text.name, text.what);
    }

    void Show(std::span<const ReportText> texts, Output& out) const
    {
        out << Style::Heading << "The report contains:" << Style::Plain << '\n';
        std::size_t longest = 0;
        for (const Content& content : contents) longest = std::max(longest, content.name.size());
        for (const Content& content : contents) {
            out << "  " << content.name;
            out.Fill(longest - content.name.size()).Number(static_cast<long long>(content.size), 12);
            out << " bytes  " << content.what << '\n';
        }
        for (const ReportText& text : texts) {
            out << '\n' << Style::Heading << text.name << ':' << Style::Plain << '\n' << text.text;
        }
    }
    void Pack(Output& out) const
    {
        ZipWriter zip(out);
        for (const Content& content : contents) {
            std::ifstream text(folder.Of(content.name), std::ios::binary);
            if (!text) throw std::runtime_error(content.name + " cannot be read");
            zip.Add(content.name, text);
        }
        zip.Finish();
    }
    std::string Folder() const { return folder.Utf8(); }

private:
    void Contain(const std::string& name, const std::string& what)
    {
        contents.push_back({name, what, fs::file_size(folder.Of(name))});
    }

    const TextFolder folder;
    std::vector<Content> contents;
};

// Reads without a buffer, so that nothing after the line is taken.
std::string LineOfStandardInput()
{
    std::string line;
    for (char c; read(0, &c, 1) == 1 && c != '\n';) line += c;
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    return line;
}

bool IsYes(const std::string& answer) { return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes"; }

void Ask(const Report& report, const std::string& path, Output& out)
{
    out << "\nThe texts are in " << report.Folder() << " until you answer, so that you can read them.\n"
        << "Nothing is sent. Write " << path << "? [y/N] ";
    out.Flush();
    if (!IsYes(LineOfStandardInput())) throw Refusal("nothing is written without a yes; --yes answers beforehand");
}

}  // namespace

int WriteReport(const Arguments& arguments, std::span<const ReportText> texts, Streams& streams)
{
    const auto path = arguments.Value("-o");
    if (!path) throw UsageError("\"report\" needs a file for the report, -o FILE");
    const std::vector<std::string> logs = LogPaths(arguments);
    const bool isAsked = !arguments.Has("--yes");
    if (isAsked && std::find(logs.begin(), logs.end(), kStandardInput) != logs.end()) {
        throw UsageError("a log from standard input leaves no place for an answer, so it needs --yes");
    }
    // Opened first, so that a file that cannot be written is reported before the user is asked.
    OutputFile file(*path);
    Report report;
    for (const ReportText& text : texts) report.AddText(text);
    int code = kFine;
    for (std::size_t i = 0; i < logs.size(); ++i) {
        code = std::max(code, report.AddLog(arguments, logs[i], NameInReport(i, logs.size()), streams.messages));
    }
    report.Show(texts, streams.data);
    if (isAsked) Ask(report, *path, streams.data);
    report.Pack(file.Data());
    file.Keep();
    streams.data << "\nWritten: " << *path << '\n';
    return code;
}

}  // namespace zelt::ctl
