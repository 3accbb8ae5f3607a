#include "bench/viewer/bare_reader.h"

#include <libxml/xmlreader.h>

#include <stdexcept>

#include "bench/rows.h"
#include "shell/log_viewer/shared_log_file.h"

namespace zelt::bench {

double ReadBare(const std::wstring& path)
{
    const Stopwatch watch;
    SharedLogFile file;
    if (file.Open(path)) throw std::runtime_error("the log cannot be opened");
    const xmlTextReaderPtr reader =
        xmlReaderForFd(file.Descriptor(), nullptr, nullptr, XML_PARSE_RECOVER | XML_PARSE_NOBLANKS | XML_PARSE_NONET);
    int status;
    while ((status = xmlTextReaderRead(reader)) == 1) {
    }
    xmlFreeTextReader(reader);
    if (status != 0) throw std::runtime_error("the log is not well-formed");
    return watch.Seconds();
}

}  // namespace zelt::bench
