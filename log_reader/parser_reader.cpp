#include "log_reader/parser_reader.h"

#include <libxml/parser.h>
#include <libxml/xmlreader.h>

#include <memory>
#include <optional>
#include <vector>

#include "log_reader/element_lines.h"
#include "log_reader/event_builder.h"
#include "log_reader/event_gate.h"
#include "log_reader/unread_nodes.h"

namespace zelt {
namespace {

struct Freer {
    void operator()(xmlTextReaderPtr reader) const { xmlFreeTextReader(reader); }
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};

// A damaged file may cause an error on each of its lines; a reading step reports at most this many of them.
constexpr std::size_t kErrorsOfOneStep = 16;

// The parser goes no deeper.
constexpr std::size_t kDeepest = 256;

struct Errors {
    const LineMap& lineMap;
    std::vector<int> lines;
    bool brokenTag = false;  // a start tag that does not end, as where a log is cut off
    std::vector<int> open;   // the start lines of the elements that were open at the last error
};

// Called from inside the parser, where nothing may be thrown: the lines wait until the step is over.
void CollectError(void* context, xmlErrorPtr error)
{
    if (error->level == XML_ERR_WARNING) return;
    Errors& errors = *static_cast<Errors*>(context);
    // An end tag that does not end has the same code, but no name.
    errors.brokenTag |= error->code == XML_ERR_GT_REQUIRED && error->str1;
    errors.open.clear();
    const auto* parser = static_cast<const xmlParserCtxt*>(error->ctxt);
    for (int i = 0; parser && i < parser->nodeNr && errors.open.size() < errors.open.capacity(); ++i) {
        errors.open.push_back(LineOf(parser->nodeTab[i]));
    }
    std::vector<int>& lines = errors.lines;
    const int line = errors.lineMap.LineOf(error->line);
    if (lines.size() == lines.capacity() || (!lines.empty() && lines.back() == line)) return;
    lines.push_back(line);
}

void ReportErrors(std::vector<int>& lines, LogSink& sink)
{
    for (const int line : lines) sink.ParseError(line);
    lines.clear();
}

int ReadInput(void* input, char* out, int length) { return static_cast<LogInput*>(input)->Read(out, length); }

xmlParserInputPtr RefuseEntity(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

}  // namespace

void PrepareLogReader()
{
    xmlInitParser();
    xmlSetExternalEntityLoader(RefuseEntity);
}

LogReadResult ReadByParser(LogInput& input, LogSink& wanted, const ResumePoint& start)
{
    EventGate sink(wanted, start);
    const LineMap lineMap(start);
    // When asked for its document, the reader gives up its ownership. The document is declared first so that it is destroyed
    // last.
    std::unique_ptr<xmlDoc, Freer> document;
    const std::unique_ptr<xmlTextReader, Freer> reader(
        xmlReaderForIO(ReadInput, nullptr, &input, nullptr, nullptr,
                       XML_PARSE_RECOVER | XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT));
    if (!reader) return LogReadResult::NotReadable;
    Errors errors{lineMap, {}, false, {}};
    errors.lines.reserve(kErrorsOfOneStep);
    errors.open.reserve(kDeepest);
    xmlTextReaderSetStructuredErrorHandler(reader.get(), CollectError, &errors);

    std::optional<ElementLines> lines;
    if (sink.WantsLines()) lines.emplace(reader.get(), lineMap);
    EventBuilder builder(reader.get(), sink);
    bool ended = false;
    int status;
    while ((status = xmlTextReaderRead(reader.get())) == 1) {
        if (!errors.lines.empty()) ReportErrors(errors.lines, sink);
        const int type = xmlTextReaderNodeType(reader.get());
        const xmlNode* node = xmlTextReaderCurrentNode(reader.get());
        ended = type != XML_READER_TYPE_ELEMENT || xmlTextReaderIsEmptyElement(reader.get()) == 1;
        bool more = true;
        if (type == XML_READER_TYPE_ELEMENT) more = builder.Start(node, ended);
        if (type == XML_READER_TYPE_END_ELEMENT) more = builder.End(node);
        if (type == XML_READER_TYPE_COMMENT) builder.Flush();
        if (!more) return LogReadResult::Cancelled;
    }
    if (status < 0) {
        // The parser is ahead of the reader, which gives up as soon as the parser does.
        const xmlNode* position = xmlTextReaderCurrentNode(reader.get());
        document.reset(xmlTextReaderCurrentDoc(reader.get()));
        const xmlNode* broken = errors.brokenTag ? LastNode(document.get()) : nullptr;
        if (!BuildUnreadNodes(document.get(), position, ended, broken, builder)) return LogReadResult::Cancelled;
    }
    builder.Finish();
    ReportErrors(errors.lines, sink);
    if (status < 0) {
        for (const int line : errors.open) sink.LeftOpen(line);
    }
    return status < 0 ? LogReadResult::Incomplete : LogReadResult::Complete;
}

}  // namespace zelt
