#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogQueryDialog.h"

class QLabel;

namespace quarry {

// What frmSJLog has stored when OK builds its clause ("" where nothing was
// given).
struct SJLogValues
{
    QString teller;     // trimmed, used as typed
    QString module;     // used as typed
    QString branchPart; // "" for none
    DateRange dates;
};

// The clause; the branch part counts only where the branch box is shown.
QUARRY_EXPORT QString sjLogClause(const SJLogValues &values, qint16 profileCode, bool showWdh);

// The login log query.
class QUARRY_EXPORT frmSJLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmSJLog();

    bool ShowWDH = false;
    void setAppId(const QList<qint16> &ids) { m_modules.ids = ids; }
    void setAppName(const QStringList &names) { m_modules.names = names; }
    qint32 lAppCount = 0;
    void showAppDes();

protected:
    void Form_Load() override;

private:
    void TxtApp_KeyUp();
    void BtnOk_Click();

    QLineEdit *TxtHy;
    QLineEdit *TxtApp;
    QLabel *AppShow;
    QLabel *Label5;
    CodeList m_modules;
    SJLogValues m_values;
};

} // namespace quarry
