#pragma once

#include "logdialogs/CodeList.h"
#include "logdialogs/LogClause.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmPJSBLog has at OK ("" where nothing was given). The dates are
// completed (see completedDate); the times are the boxes' texts.
struct PJSBLogValues
{
    QString account;     // a LIKE pattern
    QString teller;      // trimmed, used as typed
    QString voucherType; // the lists' texts
    QString result;
    ChequeRange cheques;
    QString startDate;
    QString endDate;
    QString startTime;
    QString endTime;
};

// A date box's text as the range takes it: every blank replaced by fill and
// nothing else changed, so that an open start reads "0000-00-00", an open
// end "9999-99-99" and a start left as "2009-1 -05" reads "2009-10-05".
QUARRY_EXPORT QString completedDate(const QString &masked, QChar fill);
// The clause with the branch part ("" for none). Bank profile 39 has no
// times and no recognition result, and matches the teller's name too. SQL
// Server and Sybase join date and time with "+", the others with concat().
QUARRY_EXPORT QString pjsbLogClause(const PJSBLogValues &values, qint16 profileCode,
                                    SqlDialect dialect, const QString &branchPart);

// The bill recognition log query.
class QUARRY_EXPORT frmPJSBLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmPJSBLog();

    bool ShowWDH = false;
    void setPzId(const QList<qint16> &ids) { m_vouchers.ids = ids; }
    void setPzType(const QStringList &names) { m_vouchers.names = names; }
    qint32 lPzCount = 0;
    void showPzDes();
    void setPjsbId(const QList<qint16> &ids) { m_results.ids = ids; }
    void setPjsbResult(const QStringList &names) { m_results.names = names; }
    qint32 lPjsbCount = 0;
    void showPjsbResultDes();

protected:
    void Form_Load() override;

private:
    // False, after telling the operator, when both boxes hold dates and the
    // end is before the start; an open end of the range is never refused.
    bool datesInOrder();
    // Refuses to let the operator leave a box that holds neither nothing nor
    // a date (a time).
    void checkOnLeave(MaskEdBox *box, const QString &message);
    void CmdYes_Click();

    QLineEdit *TxtAccNo;
    QLineEdit *TxtHy;
    QLineEdit *TxtBZP;
    QLineEdit *TxtEZP;
    MaskEdBox *maskBeginTime;
    MaskEdBox *maskEndTime;
    QComboBox *ComPZ;
    QComboBox *ComPjsbResult;
    CodeList m_vouchers;
    CodeList m_results;
    PJSBLogValues m_values;
};

} // namespace quarry
