#pragma once

namespace quarry::viewer {

// The station's print settings: seal.ini [BANKPARAM] PRINTLINES (the most
// rows on a page) and PRINTFONT (points).
struct PrintSettings
{
    int rowsPerPage = 60;
    int pointSize = 10;
};

} // namespace quarry::viewer
