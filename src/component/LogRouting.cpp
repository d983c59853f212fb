#include "component/LogRouting.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace quarry {

LogDialog complexLogDialog(const QString &logType, qint16 profileCode)
{
    static const QHash<QString, LogDialog> byType{
        {u"YWRZ"_s, LogDialog::YWLog},
        {u"YYRZ"_s, LogDialog::YYLog},
        {u"HYRZ"_s, LogDialog::HYLog},
        {u"SJRZ"_s, LogDialog::SJLog},
        {u"YZXCLRZ"_s, LogDialog::None},
        {u"ZGSQRZ"_s, LogDialog::ZGSQLog},
        {u"ZPGLRZ"_s, LogDialog::ZPGLLog},
        {u"PJSBRZ"_s, LogDialog::PJSBLog},
        {u"SEALRESULTSTAT"_s, LogDialog::SealResultStat},
    };
    const LogDialog dialog = byType.value(logType, LogDialog::PTFHLog);
    if (dialog == LogDialog::PJSBLog && profileCode == 38)
        return LogDialog::ChequeSeriesNo;
    return dialog;
}

bool isSealRequestLog(const QString &logType)
{
    return logType.toUpper() == u"YJREQLOG"_s;
}

} // namespace quarry
