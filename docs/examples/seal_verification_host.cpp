// A host of Quarry: asks the operator for the conditions of the seal
// verification log and lists the rows that match from the station's seal
// database (an SQLite file here; any QtSql database works the same way).
//
//   seal-verification-host /path/to/SEAL.db [LOGTYPE]   (default YYRZ)
#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    if (argc < 2 || argc > 3) {
        out << "usage: seal-verification-host SEAL.db [LOGTYPE]\n";
        return 2;
    }
    const QString logType = argc == 3 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("YYRZ");

    quarry::CQuarry quarry;
    try {
        // Verification methods (list A) and results (list B): codes,
        // descriptions, how many; then the lengths of the teller, account and
        // cheque boxes, and whether to offer branch, seal card and operator.
        quarry.showComplex(logType, {1, 2},
                           {QStringLiteral("自动验印"), QStringLiteral("人工验印")}, {0, 1},
                           {QStringLiteral("通过"), QStringLiteral("不通过")}, 2, 2, 4, 17, 8, true,
                           true, false);
    } catch (const quarry::QuarryError &) {
        // The same error is lastError(), below.
    }
    // How the call ended, not whether SQLStr() is empty: a cancelled dialog
    // can hand back the clause it stored before a check refused it.
    switch (quarry.lastOutcome()) {
    case quarry::CQuarry::Outcome::Accepted:
        break;
    case quarry::CQuarry::Outcome::Failed: {
        const quarry::QuarryError error = *quarry.lastError();
        out << error.source() << ": " << error.description() << '\n';
        return 3;
    }
    default:
        return 1; // the operator cancelled, or the log type asks nothing
    }
    const QString condition = quarry.SQLStr();

    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    db.setDatabaseName(QString::fromLocal8Bit(argv[1]));
    QSqlQuery query(db);
    if (!db.open()
        || !query.exec(QStringLiteral("SELECT OPDATE, OPCODE, ACCNO, RESULT FROM YYLOG")
                       + condition)) {
        out << (db.isOpen() ? query.lastError() : db.lastError()).text() << '\n';
        return 3;
    }
    while (query.next()) {
        out << query.value(0).toString() << ' ' << query.value(1).toString() << ' '
            << query.value(2).toString() << ' ' << query.value(3).toString() << '\n';
    }
    return 0;
}
