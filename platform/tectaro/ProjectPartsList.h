#pragma once

#include "assembly/PartsList.h"
#include "platform/tectaro/TectaroProject.h"

#include <string>
#include <vector>

namespace pluvarine {

// What to order for a whole project: the parts list of every element, read from the scene
// extras of its object file as any host would read them, and the totals per article and
// material. Elements whose object file carries no list contribute an empty one.
struct ProjectPartsList {
    struct Downpipe {
        std::string element; // the element's object file name, without surrounding blanks
        PartsList list;
    };
    std::vector<Downpipe> downpipes;
    std::vector<PartsListRow> totals;

    static ProjectPartsList of(const TectaroProject& project);

    // The list as CSV (UTF-8, comma-separated, CRLF line ends, RFC 4180 quoting): a header
    // row, one row per article per downpipe, then the totals. Article and material names and
    // the headers are the string table's in the active language; numbers are plain digits.
    // Columns: downpipe, article, catalogue file, diameter, angle, nominal length, material,
    // quantity, cut length, total length, note; a size the article has not is left empty.
    std::string toCsv() const;
    // Writes toCsv() to the file through a temporary file; false with the reason on failure.
    bool writeCsv(const std::string& path, std::string* error) const;
    // The same cells without quoting, for a table: the header, then the rows as in the CSV.
    std::vector<std::vector<std::string>> cells() const;
};

} // namespace pluvarine
