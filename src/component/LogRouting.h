#pragma once

#include <quarry/quarry_export.h>

#include <QString>

// Which log query dialog a log type asks for.
namespace quarry {

enum class LogDialog {
    YWLog,
    YYLog,
    HYLog,
    SJLog,
    None, // "YZXCLRZ": nothing is shown
    ZGSQLog,
    ZPGLLog,
    PJSBLog,
    ChequeSeriesNo,
    SealResultStat,
    PTFHLog,
};

// The dialog of showComplex: exact, case-sensitive log types; the compound
// query for any other text; bank profile 38 queries bill recognition by
// cheque series number.
QUARRY_EXPORT LogDialog complexLogDialog(const QString &logType, qint16 profileCode);

// Whether showComplexEx shows the seal-request dialog: "YJREQLOG" in any case.
QUARRY_EXPORT bool isSealRequestLog(const QString &logType);

} // namespace quarry
