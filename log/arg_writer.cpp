#include "log/arg_writer.h"

namespace zelt {

void ArgWriter::Open(std::string_view name, bool isIn)
{
    EntryText& entry = document.entry;
    Blanks(Indentation(0));
    entry += "<arg name=\"";
    AppendEscaped(entry, name);
    if (isIn) {
        entry += "\" direc=\"in\" type=\"";
    } else {
        entry += "\" direc=\"out\" type=\"";
    }
}

void ArgWriter::Line(int level, std::string_view text)
{
    Blanks(Indentation(level));
    Raw(text);
    Raw("\r\n");
}

void ArgWriter::EscapedValue(std::string_view text, const char* what, int level)
{
    Blanks(Indentation(level));
    Raw("<argval value=\"");
    const bool dropped = AppendEscaped(document.entry, text);
    Raw("\"/>\r\n");
    if (dropped && what) document.AppendSuppression(what);
}

}  // namespace zelt
