// quarry-viewer: the logs of the station for the people who read them. The
// conditions are asked by the component's own dialogs, as a host asks them.

#include "LogCatalogue.h"
#include "StationDatabase.h"
#include "ViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"quarry-viewer"_s);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Shows the logs of the station whose seal.ini the component finds."_s);
    parser.addHelpOption();
    const QCommandLineOption catalogueOption(
        u"catalogue"_s, u"The log catalogue (default: logs.ini beside seal.ini)."_s, u"file"_s);
    parser.addOption(catalogueOption);
    parser.process(app);

    QString cataloguePath = parser.value(catalogueOption);
    if (cataloguePath.isEmpty()) {
        const quarry::viewer::StationDatabase station;
        cataloguePath = QFileInfo(station.iniPath()).dir().filePath(u"logs.ini"_s);
    }
    quarry::viewer::ViewerWindow window(quarry::viewer::LogCatalogue::read(cataloguePath));
    window.show();
    return QApplication::exec();
}
