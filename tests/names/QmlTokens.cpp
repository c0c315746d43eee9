// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "QmlTokens.h"

#include <QStringList>

#include <algorithm>

namespace QmlScan
{

namespace
{

//! Punctuators of several characters, the longest first.
const QStringList s_punctuators =
    QStringLiteral(">>>= ... === !== **= <<= >>= >>> => == != <= >= && || ++ -- += -= *= /= %= &= |= ^= << >> **")
        .split(QLatin1Char(' '));
const QStringList s_operatorNames =
    QStringLiteral("return typeof case in of instanceof delete void new throw else do yield").split(QLatin1Char(' '));

class Tokenizer
{
public:
    explicit Tokenizer(const QString &source)
        : m_source(source)
    {
    }

    QVector<Token> run()
    {
        while (m_at < m_source.size()) {
            step();
        }
        return m_tokens;
    }

private:
    QChar at(int offset = 0) const { return m_source.size() > m_at + offset ? m_source.at(m_at + offset) : QChar(); }
    bool startsWith(const QString &text) const { return m_source.midRef(m_at, text.size()) == text; }

    void step()
    {
        if (at().isSpace()) {
            advance(1);
        } else if (at() == QLatin1Char('/') && at(1) == QLatin1Char('/')) {
            advanceTo(m_source.indexOf(QLatin1Char('\n'), m_at));
        } else if (at() == QLatin1Char('/') && at(1) == QLatin1Char('*')) {
            const int end = m_source.indexOf(QLatin1String("*/"), m_at + 2);
            advanceTo(end < 0 ? end : end + 2);
        } else if (isNamePart(at()) && !at().isDigit()) {
            add(Token::Kind::Name, lengthWhile(isNamePart));
        } else if (at().isDigit() || (at() == QLatin1Char('.') && at(1).isDigit())) {
            add(Token::Kind::Number, numberLength());
        } else if (at() == QLatin1Char('"') || at() == QLatin1Char('\'')) {
            addString(stringLength(at()), 1);
        } else if (at() == QLatin1Char('`')) {
            advance(1);
            addTemplatePart();
        } else if (at() == QLatin1Char('/') && !followsOperand()) {
            add(Token::Kind::Pattern, patternLength());
        } else {
            addPunctuator();
        }
    }

    static bool isNamePart(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$'); }

    //! Whether a slash divides here; else it begins a regular expression.
    bool followsOperand() const
    {
        if (m_tokens.isEmpty()) {
            return false;
        }
        const Token &last = m_tokens.last();
        switch (last.kind) {
        case Token::Kind::Name:
            return !isOperator(last.text);
        case Token::Kind::Punctuator:
            return last.text == QLatin1String(")") || last.text == QLatin1String("]");
        default:
            return true;
        }
    }

    template<typename Predicate>
    int lengthWhile(Predicate predicate) const
    {
        int length = 0;
        while (m_at + length < m_source.size() && predicate(at(length))) {
            ++length;
        }
        return length;
    }

    int numberLength() const
    {
        return lengthWhile([previous = QChar()](QChar c) mutable {
            const bool isExponentSign =
                (c == QLatin1Char('-') || c == QLatin1Char('+')) && previous == QLatin1Char('e');
            previous = c;
            return isNamePart(c) || c == QLatin1Char('.') || isExponentSign;
        });
    }

    int stringLength(QChar quote) const
    {
        int length = 1;
        while (m_at + length < m_source.size() && at(length) != quote && at(length) != QLatin1Char('\n')) {
            length += at(length) == QLatin1Char('\\') ? 2 : 1;
        }
        return length + 1;
    }

    int patternLength() const
    {
        int length = 1;
        bool inClass = false;
        while (m_at + length < m_source.size() && at(length) != QLatin1Char('\n')
               && (inClass || at(length) != QLatin1Char('/'))) {
            inClass = at(length) == QLatin1Char('[') || (inClass && at(length) != QLatin1Char(']'));
            length += at(length) == QLatin1Char('\\') ? 2 : 1;
        }
        ++length;
        while (isNamePart(at(length))) {
            ++length; // flags
        }
        return length;
    }

    //! From here to the end of the template or to its next expression.
    void addTemplatePart()
    {
        int length = 0;
        while (m_at + length < m_source.size() && at(length) != QLatin1Char('`')
               && !(at(length) == QLatin1Char('$') && at(length + 1) == QLatin1Char('{'))) {
            length += at(length) == QLatin1Char('\\') ? 2 : 1;
        }
        addString(length, 0);
        if (at() == QLatin1Char('$')) {
            m_braces.append(true);
            add(Token::Kind::Punctuator, 2);
        } else {
            advance(1);
        }
    }

    void addPunctuator()
    {
        const auto longer = std::find_if(s_punctuators.begin(), s_punctuators.end(),
                                         [this](const QString &punctuator) { return startsWith(punctuator); });
        const QChar first = at();
        add(Token::Kind::Punctuator, longer == s_punctuators.end() ? 1 : longer->size());
        if (first == QLatin1Char('{')) {
            m_braces.append(false);
        } else if (first == QLatin1Char('}') && !m_braces.isEmpty() && m_braces.takeLast()) {
            addTemplatePart();
        }
    }

    void addString(int length, int quotes)
    {
        add(Token::Kind::String, length);
        Token &token = m_tokens.last();
        token.text = token.text.mid(quotes, token.text.size() - 2 * quotes);
    }

    void add(Token::Kind kind, int length)
    {
        m_tokens.append({kind, m_source.mid(m_at, length), m_line, m_line != m_lastLine});
        advance(length);
        m_lastLine = m_line;
    }

    void advanceTo(int position) { advance((position < 0 ? m_source.size() : position) - m_at); }

    void advance(int length)
    {
        m_line += m_source.midRef(m_at, length).count(QLatin1Char('\n'));
        m_at = std::min(m_at + length, int(m_source.size()));
    }

    const QString m_source;
    int m_at = 0;
    int m_line = 1;
    int m_lastLine = 0; //!< in which the last token ended
    QVector<Token> m_tokens;
    QVector<bool> m_braces; //!< those that are open: whether they belong to a template
};

} // namespace

QVector<Token> tokenize(const QString &source)
{
    return Tokenizer(source).run();
}

bool isOperator(const QString &name)
{
    return s_operatorNames.contains(name);
}

} // namespace QmlScan
