#include "ConditionWords.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

struct Token
{
    enum class Kind { Word, Number, Literal, Symbol };
    Kind kind;
    QString text;   // a literal's value as the database reads it
    qsizetype from; // where the token stands in the condition
    qsizetype to;
};

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'.';
}

// The value of the literal whose opening quote is at `at`, which moves past
// its closing quote. Nothing for a literal without its end, or with a MySQL
// escape the component does not write.
std::optional<QString> literal(const QString &sql, qsizetype &at, SqlDialect dialect)
{
    QString value;
    ++at;
    while (at < sql.size()) {
        const QChar c = sql[at++];
        if (c == u'\\' && dialect == SqlDialect::MySql) {
            if (at == sql.size() || (sql[at] != u'\\' && sql[at] != u'\''))
                return std::nullopt;
            value += sql[at++];
        } else if (c != u'\'') {
            value += c;
        } else if (at < sql.size() && sql[at] == u'\'') {
            value += sql[at++];
        } else {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<QList<Token>> tokensOf(const QString &sql, SqlDialect dialect)
{
    QList<Token> tokens;
    qsizetype at = 0;
    while (at < sql.size()) {
        const qsizetype from = at;
        const QChar c = sql[at];
        if (c.isSpace()) {
            ++at;
        } else if (c == u'\'') {
            const std::optional<QString> value = literal(sql, at, dialect);
            if (!value)
                return std::nullopt;
            tokens.append({Token::Kind::Literal, *value, from, at});
        } else {
            Token::Kind kind = Token::Kind::Symbol;
            if (isWordCharacter(c)) {
                kind = c.isDigit() ? Token::Kind::Number : Token::Kind::Word;
                while (at < sql.size() && isWordCharacter(sql[at]))
                    ++at;
            } else {
                const bool twoCharacters
                    = (c == u'>' || c == u'<') && at + 1 < sql.size() && sql[at + 1] == u'=';
                at += twoCharacters ? 2 : 1;
            }
            tokens.append({kind, sql.mid(from, at - from), from, at});
        }
    }
    return tokens;
}

bool isSymbolToken(const Token &token, QChar symbol)
{
    return token.kind == Token::Kind::Symbol && token.text == symbol;
}

// For each "(" the index of its ")"; nothing when they do not pair.
std::optional<QList<qsizetype>> closersOf(const QList<Token> &tokens)
{
    QList<qsizetype> closers(tokens.size(), -1);
    QList<qsizetype> open;
    for (qsizetype at = 0; at < tokens.size(); ++at) {
        if (isSymbolToken(tokens[at], u'(')) {
            open.append(at);
        } else if (isSymbolToken(tokens[at], u')')) {
            if (open.isEmpty())
                return std::nullopt;
            closers[open.takeLast()] = at;
        }
    }
    if (!open.isEmpty())
        return std::nullopt;
    return closers;
}

// A value as the words show it: between “ ” when its ends could not be seen.
QString shown(const QString &value)
{
    if (value.isEmpty() || value.front().isSpace() || value.back().isSpace())
        return u"“"_s + value + u"”"_s;
    return value;
}

bool looksLikeDate(const QString &value)
{
    static const QRegularExpression date(u"^\\d{4}-\\d\\d-\\d\\d"_s);
    return date.match(value).hasMatch();
}

// "=", ">=" or "<=" in words; a date is not less, but not earlier.
QString comparisonWord(const QString &op, const QString &value)
{
    if (op == u"="_s)
        return u"为"_s;
    const bool date = looksLikeDate(value);
    if (op == u">="_s)
        return date ? u"不早于"_s : u"不小于"_s;
    return date ? u"不晚于"_s : u"不大于"_s;
}

// A character of a LIKE pattern: one to match as it stands, or a wildcard.
struct PatternCharacter
{
    QChar c;
    bool wildcard;

    bool anyRun() const { return wildcard && c == u'%'; }
};

std::optional<QList<PatternCharacter>> patternOf(const QString &pattern, SqlDialect dialect)
{
    const bool classes = dialect == SqlDialect::SqlServer || dialect == SqlDialect::Sybase;
    QList<PatternCharacter> characters;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const QChar c = pattern[at];
        if (c == u'%' || c == u'_') {
            characters.append({c, true});
        } else if (c == u'\\' && dialect == SqlDialect::MySql) {
            if (++at == pattern.size())
                return std::nullopt;
            characters.append({pattern[at], false});
        } else if (c == u'[' && classes) {
            // The component writes a bracket as "[[]"; any other class stays SQL.
            if (QStringView(pattern).mid(at, 3) != u"[[]")
                return std::nullopt;
            characters.append({c, false});
            at += 2;
        } else {
            characters.append({c, false});
        }
    }
    return characters;
}

// A pattern with wildcards inside, written out; nothing when a character
// to match as it stands would read as a wildcard.
std::optional<QString> writtenPattern(const QList<PatternCharacter> &pattern)
{
    QString written;
    QStringList legend;
    for (const PatternCharacter &p : pattern) {
        if (!p.wildcard && (p.c == u'%' || p.c == u'_'))
            return std::nullopt;
        written += p.c;
    }
    if (written.contains(u'_'))
        legend.append(u"“_”为任一个字符"_s);
    if (written.contains(u'%'))
        legend.append(u"“%”为任意个字符"_s);
    return u"形如 "_s + shown(written) + u"（"_s + legend.join(u"，"_s) + u"）"_s;
}

// Part of the condition in words, and the word that joins its parts.
struct Reading
{
    enum class Join { None, And, Or };
    QString text;
    Join join = Join::None;
};

// Parentheses where AND and OR meet; a part said twice is said once.
Reading joined(const QList<Reading> &parts, Reading::Join join)
{
    QStringList texts;
    for (const Reading &part : parts) {
        const bool bracketed = part.join != Reading::Join::None && part.join != join;
        const QString text = bracketed ? u"（"_s + part.text + u"）"_s : part.text;
        if (!texts.contains(text))
            texts.append(text);
    }
    if (texts.size() == 1)
        return parts.first();
    return {texts.join(join == Reading::Join::And ? u"，并且 "_s : u"，或者 "_s), join};
}

// What a comparison is about: a column, or two columns joined into one
// text (a date and a time of day).
struct Operand
{
    QString title;
    QString column; // empty for two joined
};

class Reader
{
public:
    Reader(const QString &sql, const LogEntry &entry, SqlDialect dialect)
        : m_sql(sql)
        , m_entry(entry)
        , m_dialect(dialect)
    {
    }

    QString words()
    {
        const std::optional<QList<Token>> tokens = tokensOf(m_sql, m_dialect);
        const std::optional<QList<qsizetype>> closers = tokens ? closersOf(*tokens) : std::nullopt;
        if (!closers)
            return m_sql.trimmed();
        m_tokens = *tokens;
        m_closers = *closers;
        const qsizetype from = is(0, "where"_L1) ? 1 : 0;
        // A whole statement (the statistics' SELECT) is no condition on rows.
        if (from == m_tokens.size() || is(from, "select"_L1))
            return m_sql.trimmed();
        return expression(from, m_tokens.size()).text;
    }

private:
    bool is(qsizetype at, QLatin1StringView word) const
    {
        return at < m_tokens.size() && m_tokens[at].kind == Token::Kind::Word
            && m_tokens[at].text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool isSymbol(qsizetype at, QChar symbol) const
    {
        return at < m_tokens.size() && isSymbolToken(m_tokens[at], symbol);
    }
    bool isValue(qsizetype at) const
    {
        return at < m_tokens.size()
            && (m_tokens[at].kind == Token::Kind::Literal
                || m_tokens[at].kind == Token::Kind::Number);
    }
    bool isColumn(qsizetype at) const
    {
        static const QStringList keywords{u"and"_s,     u"or"_s, u"not"_s, u"like"_s,
                                          u"between"_s, u"in"_s, u"is"_s,  u"null"_s};
        return at < m_tokens.size() && m_tokens[at].kind == Token::Kind::Word
            && !keywords.contains(m_tokens[at].text, Qt::CaseInsensitive);
    }
    bool isComparison(qsizetype at) const
    {
        const Token &token = m_tokens[at];
        return is(at, "like"_L1) || is(at, "between"_L1) || is(at, "in"_L1)
            || (token.kind == Token::Kind::Symbol
                && (token.text == u"="_s || token.text == u">="_s || token.text == u"<="_s));
    }
    QString fragment(qsizetype from, qsizetype to) const
    {
        return m_sql.mid(m_tokens[from].from, m_tokens[to - 1].to - m_tokens[from].from);
    }

    // Parts joined by AND, and those by OR; AND binds first. The AND of a
    // BETWEEN belongs to it.
    Reading expression(qsizetype from, qsizetype to) const
    {
        QList<Reading> alternatives;
        QList<Reading> terms;
        qsizetype start = from;
        bool inBetween = false;
        // The token at to is the group's ")" or past the end: it ends the last part.
        for (qsizetype at = from; at <= to; ++at) {
            if (isSymbol(at, u'(')) {
                at = m_closers[at];
                continue;
            }
            inBetween = inBetween || is(at, "between"_L1);
            const bool conjunction = is(at, "and"_L1);
            if (conjunction && inBetween) {
                inBetween = false;
                continue;
            }
            if (at < to && !conjunction && !is(at, "or"_L1))
                continue;
            if (at == start) // a part missing: not a condition to read
                return {fragment(from, to)};
            terms.append(part(start, at));
            start = at + 1;
            if (!conjunction) {
                alternatives.append(joined(terms, Reading::Join::And));
                terms.clear();
            }
        }
        return joined(alternatives, Reading::Join::Or);
    }

    Reading part(qsizetype from, qsizetype to) const
    {
        if (isSymbol(from, u'(') && m_closers[from] == to - 1 && to - from > 2)
            return expression(from + 1, to - 1);
        if (const std::optional<QString> words = comparison(from, to))
            return {*words};
        return {fragment(from, to)};
    }

    std::optional<QString> comparison(qsizetype from, qsizetype to) const
    {
        qsizetype op = from;
        while (op < to && !isComparison(op))
            op = isSymbol(op, u'(') ? m_closers[op] + 1 : op + 1;
        if (op == to)
            return std::nullopt;
        const std::optional<Operand> subject = operand(from, op);
        const std::optional<QString> predicate
            = subject ? this->predicate(*subject, op, to) : std::nullopt;
        if (!predicate)
            return std::nullopt;
        return subject->title + u' ' + *predicate;
    }

    std::optional<Operand> operand(qsizetype from, qsizetype to) const
    {
        if (to - from == 1 && isColumn(from))
            return Operand{title(from), bareName(from)};
        if (to - from == 3 && isColumn(from) && isSymbol(from + 1, u'+') && isColumn(from + 2))
            return Operand{title(from) + title(from + 2), {}};
        if (to - from == 6 && is(from, "concat"_L1) && isSymbol(from + 1, u'(')
            && isColumn(from + 2) && isSymbol(from + 3, u',') && isColumn(from + 4))
            return Operand{title(from + 2) + title(from + 4), {}};
        return std::nullopt;
    }

    QString bareName(qsizetype at) const
    {
        const QString &name = m_tokens[at].text;
        return name.mid(name.lastIndexOf(u'.') + 1);
    }
    QString title(qsizetype at) const
    {
        return m_entry.columnTitles.value(bareName(at).toUpper(), m_tokens[at].text);
    }

    std::optional<QString> predicate(const Operand &subject, qsizetype op, qsizetype to) const
    {
        const qsizetype right = op + 1;
        const qsizetype count = to - right;
        if (is(op, "like"_L1)) {
            if (count != 1 || m_tokens[right].kind != Token::Kind::Literal)
                return std::nullopt;
            return likeWords(subject, m_tokens[right].text);
        }
        if (is(op, "between"_L1)) {
            if (count != 3 || !isValue(right) || !is(right + 1, "and"_L1) || !isValue(right + 2))
                return std::nullopt;
            return u"从 "_s + valueWords(subject, right) + u" 到 "_s
                + valueWords(subject, right + 2);
        }
        if (is(op, "in"_L1))
            return inWords(subject, right, to);
        if (count != 1 || !isValue(right))
            return std::nullopt;
        return comparisonWord(m_tokens[op].text, m_tokens[right].text) + u' '
            + valueWords(subject, right);
    }

    // "( ... )" of values after IN.
    std::optional<QString> inWords(const Operand &subject, qsizetype from, qsizetype to) const
    {
        if (!isSymbol(from, u'(') || m_closers[from] != to - 1)
            return std::nullopt;
        QStringList values;
        for (qsizetype at = from + 1;; at += 2) {
            if (!isValue(at)) // also the bracket that ends an empty list or a comma
                return std::nullopt;
            values.append(valueWords(subject, at));
            if (at + 1 == to - 1)
                break;
            if (!isSymbol(at + 1, u','))
                return std::nullopt;
        }
        if (values.size() == 1)
            return u"为 "_s + values.first();
        return u"为 "_s + values.join(u"、"_s) + u" 之一"_s;
    }

    std::optional<QString> likeWords(const Operand &subject, const QString &text) const
    {
        const std::optional<QList<PatternCharacter>> pattern = patternOf(text, m_dialect);
        if (!pattern)
            return std::nullopt;
        QString plain;
        for (const PatternCharacter &p : *pattern) {
            if (!p.wildcard)
                plain += p.c;
        }
        if (plain.size() == pattern->size())
            return u"为 "_s + valueWords(subject, plain);
        const auto isAnyRun = [](const PatternCharacter &p) { return p.anyRun(); };
        const auto first = std::find_if_not(pattern->cbegin(), pattern->cend(), isAnyRun);
        if (first == pattern->cend())
            return u"不限"_s;
        const auto last = std::find_if_not(pattern->crbegin(), pattern->crend(), isAnyRun).base();
        if (std::any_of(first, last, [](const PatternCharacter &p) { return p.wildcard; }))
            return writtenPattern(*pattern);
        if (first != pattern->cbegin() && last != pattern->cend())
            return u"包含 "_s + shown(plain);
        return u"以 "_s + shown(plain) + (first != pattern->cbegin() ? u" 结尾"_s : u" 开头"_s);
    }

    QString valueWords(const Operand &subject, qsizetype at) const
    {
        return valueWords(subject, m_tokens[at].text);
    }
    QString valueWords(const Operand &subject, const QString &value) const
    {
        if (subject.column.isEmpty()) {
            static const QRegularExpression dateThenTime(
                u"^(\\d{4}-\\d\\d-\\d\\d)(\\d\\d:\\d\\d:\\d\\d)$"_s);
            const QRegularExpressionMatch match = dateThenTime.match(value);
            return match.hasMatch() ? match.captured(1) + u' ' + match.captured(2) : shown(value);
        }
        const std::optional<QString> description = codeDescription(subject.column, value);
        return description ? shown(value) + u"（"_s + *description + u"）"_s : shown(value);
    }

    std::optional<QString> codeDescription(const QString &column, const QString &code) const
    {
        for (const CodeListSource *list : {&m_entry.listA, &m_entry.listB}) {
            if (list->column.compare(column, Qt::CaseInsensitive) != 0)
                continue;
            for (qsizetype i = 0; i < list->ids.size(); ++i) {
                if (QString::number(list->ids[i]) == code)
                    return list->names.value(i);
            }
        }
        return std::nullopt;
    }

    const QString &m_sql;
    const LogEntry &m_entry;
    SqlDialect m_dialect;
    QList<Token> m_tokens;
    QList<qsizetype> m_closers;
};

} // namespace

namespace {

// The condition the statistics' SELECT carries, as a WHERE clause: its
// branch and teller patterns and its dates; "" for a statement of another
// shape.
QString statisticsCondition(const QString &select)
{
    static const QString literal = uR"('((?:[^'\\]|''|\\.)*)')"_s;
    static const QRegularExpression dates(literal + uR"(\s+AS\s+BeginDate\s*,\s*)"_s + literal
                                              + uR"(\s+AS\s+EndDate\b)"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression branch(uR"(\swhere\s+wdh\s+like\s*)"_s + literal,
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression teller(uR"(\sand\s+TotalPj\.opcode\s+like\s*)"_s + literal,
                                           QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch range = dates.match(select);
    if (!range.hasMatch())
        return {};
    // A pattern the statement leaves out reads "不限", so that the words
    // name all three.
    const QRegularExpressionMatch inBranch = branch.match(select);
    const QRegularExpressionMatch byTeller = teller.match(select);
    const QString clause
        = u" where wdh like '%1' and opcode like '%2' and opdate between '%3' and '%4'"_s.arg(
            inBranch.hasMatch() ? inBranch.captured(1) : u"%"_s,
            byTeller.hasMatch() ? byTeller.captured(1) : u"%"_s, range.captured(1),
            range.captured(2));
    return clause;
}

} // namespace

QString conditionWords(const QString &condition, const LogEntry &entry, SqlDialect dialect)
{
    if (condition.trimmed().isEmpty())
        return u"全部记录"_s;
    if (entry.result == LogEntry::Result::Select) {
        if (const QString clause = statisticsCondition(condition); !clause.isEmpty()) {
            LogEntry dated = entry;
            if (!dated.columnTitles.contains(u"OPDATE"_s))
                dated.columnTitles.insert(u"OPDATE"_s, u"日期"_s);
            return Reader(clause, dated, dialect).words();
        }
    }
    return Reader(condition, entry, dialect).words();
}

} // namespace quarry::viewer
