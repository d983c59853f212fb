#include "ProgramHelp.h"

#include <QFileInfo>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace quarry::apps {

QString standardOptionLines()
{
    return u"  -h, --help         显示本说明\n"
           "  -v, --version      显示版本\n"_s;
}

std::optional<int> answerHelpOrVersion(const QStringList &arguments, const QString &usage)
{
    const QStringList words = arguments.mid(1);
    QTextStream out(stdout);
    if (words.contains(u"-h"_s) || words.contains(u"--help"_s)) {
        out << usage;
        return 0;
    }
    if (words.contains(u"-v"_s) || words.contains(u"--version"_s)) {
        out << QFileInfo(arguments.value(0)).fileName() << u" " QUARRY_VERSION "\n"_s;
        return 0;
    }
    return std::nullopt;
}

} // namespace quarry::apps
