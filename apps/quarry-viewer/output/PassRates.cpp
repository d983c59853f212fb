#include "PassRates.h"

#include <QAbstractItemModel>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The column whose header is name, without regard to case; -1 when none.
int column(const QAbstractItemModel &model, const QString &name)
{
    for (int c = 0; c < model.columnCount(); ++c) {
        if (model.headerData(c, Qt::Horizontal).toString().compare(name, Qt::CaseInsensitive) == 0)
            return c;
    }
    return -1;
}

} // namespace

std::optional<PassRates> passRates(const QAbstractItemModel &model)
{
    const int opcode = column(model, u"opcode"_s);
    const int total = column(model, u"total"_s);
    const int passed = column(model, u"passed"_s);
    if (opcode < 0 || total < 0 || passed < 0)
        return std::nullopt;
    PassRates rates;
    for (int row = 0; row < model.rowCount(); ++row) {
        const double count = model.index(row, total).data().toDouble();
        const double rate
            = count > 0 ? model.index(row, passed).data().toDouble() * 100.0 / count : 0.0;
        rates.append({model.index(row, opcode).data().toString(), rate});
    }
    return rates;
}

} // namespace quarry::viewer
