// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "QmlScan.h"

#include <QStringList>

#include <algorithm>

namespace QmlScan
{

namespace
{

bool isOpening(const QString &text)
{
    return text == QLatin1String("(") || text == QLatin1String("[") || text == QLatin1String("{")
        || text == QLatin1String("${");
}

bool isClosing(const QString &text)
{
    return text == QLatin1String(")") || text == QLatin1String("]") || text == QLatin1String("}");
}

bool isPunctuator(const Token &token, const char *text)
{
    return token.kind == Token::Kind::Punctuator && token.text == QLatin1String(text);
}

bool endsOperand(const Token &token)
{
    if (token.kind == Token::Kind::Punctuator) {
        return isClosing(token.text) || token.text == QLatin1String("++") || token.text == QLatin1String("--");
    }
    return token.kind != Token::Kind::Name || !isOperator(token.text);
}

//! Whether a token at the start of a line, after an operand, belongs to another expression.
bool startsExpression(const Token &token)
{
    return token.kind != Token::Kind::Punctuator && token.text != QLatin1String("in")
        && token.text != QLatin1String("instanceof");
}

//! What the parsers of objects and of locals share.
class Reader
{
public:
    explicit Reader(Document *document)
        : m_document(*document)
    {
    }

protected:
    int size() const { return m_document.tokens.size(); }
    bool is(int token, const char *text) const { return m_document.is(token, text); }
    bool isName(int token) const { return m_document.isName(token); }
    QString text(int token) const
    {
        return token >= 0 && token < size() ? m_document.tokens.at(token).text : QString();
    }
    int closing(int token) const { return m_document.closing(token); }

    //! The end of the expression at a token, maximum @p limit. A line break ends it if it is complete.
    int expressionEnd(int token, int limit) const
    {
        for (int i = token; i < limit; ++i) {
            const Token &next = m_document.tokens.at(i);
            if (isPunctuator(next, ";") || isPunctuator(next, ",")
                || (next.kind == Token::Kind::Punctuator && isClosing(next.text))) {
                return i;
            }
            if (i > token && next.startsLine && startsExpression(next) && endsOperand(m_document.tokens.at(i - 1))) {
                return i;
            }
            if (next.kind == Token::Kind::Punctuator && isOpening(next.text)) {
                i = closing(i);
            }
        }
        return limit;
    }

    //! The names of the parameters between the brackets at @p opening. A signal has types before its names.
    struct Parameters
    {
        QStringList names;
        int minimum = 0;
        int maximum = 0;
    };
    Parameters parameters(int opening) const
    {
        Parameters parameters;
        for (const Range &part : m_document.arguments(opening)) {
            const QVector<Range> halves = m_document.split(part, "=");
            if (halves.isEmpty() || halves.first().isEmpty()) {
                continue;
            }
            const Range declaration = m_document.split(halves.first(), ":").first();
            const bool isRest = is(declaration.begin, "...");
            parameters.names.append(text(declaration.end - 1));
            parameters.maximum = isRest ? AnyNumber : parameters.maximum + 1;
            if (!isRest && halves.size() == 1) {
                ++parameters.minimum;
            }
        }
        return parameters;
    }

    Document &m_document;
};

class ObjectParser : public Reader
{
public:
    using Reader::Reader;

    void run()
    {
        for (int i = 0; i < size(); ++i) {
            const int brace = typeEnd(i);
            if (is(brace, "{") && !is(i - 1, ".") && isType(brace)) {
                parseObject(i, brace, -1);
                return;
            }
        }
    }

private:
    //! Behind the name at a token, which may have dots.
    int typeEnd(int token) const
    {
        if (!isName(token)) {
            return token;
        }
        int end = token + 1;
        while (is(end, ".") && isName(end + 1)) {
            end += 2;
        }
        return end;
    }

    //! Whether the name that ends here is that of a type.
    bool isType(int end) const { return text(end - 1).at(0).isUpper(); }

    //! @return the token behind the object whose type is at @p begin and whose "{" is at @p brace
    int parseObject(int begin, int brace, int parent)
    {
        const int index = m_document.objects.size();
        Object object;
        object.type = m_document.text({begin, typeEnd(begin)});
        object.line = m_document.tokens.at(begin).line;
        object.parent = parent;
        object.body = {brace + 1, closing(brace)};
        m_document.objects.append(object);
        std::fill(m_document.owners.begin() + object.body.begin, m_document.owners.begin() + object.body.end, index);
        for (int i = object.body.begin; i < object.body.end;) {
            i = std::max(i + 1, parseMember(i, index));
        }
        return object.body.end + 1;
    }

    int parseMember(int token, int object)
    {
        if (!isName(token)) {
            return token + 1;
        }
        const int end = typeEnd(token);
        if (is(end, ":")) {
            return parseBinding(token, end, object);
        }
        if (is(end, "{")) {
            return parseObject(token, end, object);
        }
        if (text(end) == QLatin1String("on") && is(typeEnd(end + 1), "{")) {
            return parseObject(token, typeEnd(end + 1), object);
        }
        if (text(token) == QLatin1String("function") || text(token) == QLatin1String("signal")) {
            return parseMethod(token, object);
        }
        return parseProperty(token, object);
    }

    int parseBinding(int token, int colon, int object)
    {
        const QString name = m_document.text({token, colon});
        if (name == QLatin1String("id")) {
            m_document.objects[object].id = text(colon + 1);
            return colon + 2;
        }
        const Value value = parseValue(colon + 1, object);
        if (!value.expression.isEmpty()) {
            m_document.objects[object].bindings.insert(name, value.expression);
        }
        return value.end;
    }

    int parseMethod(int token, int object)
    {
        Member member;
        member.kind = text(token) == QLatin1String("signal") ? Member::Kind::Signal : Member::Kind::Function;
        member.name = text(token + 1);
        member.line = m_document.tokens.at(token).line;
        int end = token + 2;
        if (is(end, "(")) {
            const Parameters taken = parameters(end);
            member.minimumArguments = taken.minimum;
            member.maximumArguments = taken.maximum;
            end = closing(end) + 1;
        }
        m_document.objects[object].members.append(member);
        if (member.kind == Member::Kind::Signal) {
            return end;
        }
        while (end < m_document.objects.at(object).body.end && !is(end, "{")) {
            ++end; // a return type
        }
        return closing(end) + 1;
    }

    //! "[default] [required] [readonly] property TYPE NAME [: VALUE]"
    int parseProperty(int token, int object)
    {
        Member member;
        member.kind = Member::Kind::Property;
        member.line = m_document.tokens.at(token).line;
        for (; isName(token) && text(token) != QLatin1String("property"); ++token) {
            member.isReadOnly = member.isReadOnly || text(token) == QLatin1String("readonly");
        }
        if (!isName(token) || !isName(token + 1)) {
            return token;
        }
        int end = typeEnd(token + 1);
        if (is(end, "<")) {
            end = typeEnd(end + 1) + 1;
        }
        member.type = m_document.text({token + 1, end});
        member.name = text(end);
        ++end;
        if (is(end, ":")) {
            const Value value = parseValue(end + 1, object);
            member.value = value.expression;
            member.object = value.object;
            end = value.end;
        }
        m_document.objects[object].members.append(member);
        return end;
    }

    struct Value
    {
        int end = 0;
        Range expression;
        int object = -1;
    };
    //! An object, a list of objects, a block of statements or an expression.
    Value parseValue(int token, int object)
    {
        const int limit = m_document.objects.at(object).body.end;
        const int type = typeEnd(token);
        Value value;
        if (is(type, "{") && type > token && isType(type)) {
            value.object = m_document.objects.size();
            value.end = parseObject(token, type, object);
        } else if (const int first = typeEnd(token + 1); is(token, "[") && first > token + 1 && is(first, "{")) {
            for (int i = token + 1; i < closing(token); ++i) {
                i = parseObject(i, typeEnd(i), object); // the next is a comma
            }
            value.end = closing(token) + 1;
        } else if (is(token, "{")) {
            value.end = closing(token) + 1;
        } else {
            value.end = expressionEnd(token, limit);
            value.expression = {token, value.end};
        }
        return value;
    }
};

class LocalParser : public Reader
{
public:
    using Reader::Reader;

    void run()
    {
        QVector<int> open;
        for (int i = 0; i < size(); ++i) {
            if (is(i, "{") || is(i, "${")) {
                open.append(i);
            } else if (is(i, "}") && !open.isEmpty()) {
                open.removeLast();
            } else if (is(i, "=>")) {
                addArrow(i);
            } else if (isName(i) && !is(i - 1, ".")) {
                const int end = open.isEmpty() ? size() : closing(open.last());
                addAt(i, end);
            }
        }
    }

private:
    void addAt(int token, int scopeEnd)
    {
        const QString name = text(token);
        const bool isPropertyType = text(token - 1) == QLatin1String("property");
        if (name == QLatin1String("const") || name == QLatin1String("let")
            || (name == QLatin1String("var") && !isPropertyType)) {
            addVariables(token + 1, scopeEnd);
        } else if (name == QLatin1String("function") || name == QLatin1String("catch")) {
            const int opening = is(token + 1, "(") ? token + 1 : token + 2;
            int body = closing(opening);
            while (body < scopeEnd && !is(body, "{")) {
                ++body;
            }
            if (is(opening, "(")) {
                addParameters(opening, closing(body));
            }
        }
    }

    //! "NAME [= VALUE]", more of them after commas
    void addVariables(int token, int scopeEnd)
    {
        while (isName(token)) {
            Local local {text(token), {token, scopeEnd}, {}};
            int end = token + 1;
            if (is(end, "=")) {
                local.value = {end + 1, expressionEnd(end + 1, scopeEnd)};
                end = local.value.end;
            }
            m_document.locals.append(local);
            token = is(end, ",") ? end + 1 : size();
        }
    }

    void addArrow(int arrow)
    {
        const int end = is(arrow + 1, "{") ? closing(arrow + 1) : expressionEnd(arrow + 1, size());
        if (isName(arrow - 1)) {
            m_document.locals.append({text(arrow - 1), {arrow - 1, end}, {}});
            return;
        }
        int opening = arrow - 1;
        while (opening >= 0 && !(is(opening, "(") && closing(opening) == arrow - 1)) {
            --opening;
        }
        if (opening >= 0) {
            addParameters(opening, end);
        }
    }

    void addParameters(int opening, int scopeEnd)
    {
        const QStringList names = parameters(opening).names;
        for (const QString &name : names) {
            m_document.locals.append({name, {opening, scopeEnd}, {}});
        }
    }
};

//! For each token that is an opening bracket the one that closes it, whatever its kind.
QVector<int> closingsOf(const QVector<Token> &tokens)
{
    QVector<int> closings(tokens.size(), tokens.size());
    QVector<int> open;
    for (int i = 0; i < tokens.size(); ++i) {
        if (tokens.at(i).kind != Token::Kind::Punctuator) {
            continue;
        }
        if (isOpening(tokens.at(i).text)) {
            open.append(i);
        } else if (isClosing(tokens.at(i).text) && !open.isEmpty()) {
            closings[open.takeLast()] = i;
        }
    }
    return closings;
}

Document parse(const QString &source)
{
    Document document;
    document.tokens = tokenize(source);
    document.closings = closingsOf(document.tokens);
    document.owners.fill(-1, document.tokens.size());
    LocalParser(&document).run();
    return document;
}

} // namespace

bool Document::is(int token, const char *text) const
{
    return token >= 0 && token < tokens.size() && isPunctuator(tokens.at(token), text);
}

bool Document::isName(int token) const
{
    return token >= 0 && token < tokens.size() && tokens.at(token).kind == Token::Kind::Name;
}

QVector<Range> Document::split(const Range &range, const char *separator) const
{
    QVector<Range> parts;
    if (range.isEmpty()) {
        return parts;
    }
    int begin = range.begin;
    for (int i = range.begin; i < range.end; ++i) {
        if (is(i, separator)) {
            parts.append({begin, i});
            begin = i + 1;
        } else if (tokens.at(i).kind == Token::Kind::Punctuator && isOpening(tokens.at(i).text)) {
            i = closing(i);
        }
    }
    parts.append({begin, range.end});
    return parts;
}

QVector<Range> Document::arguments(int token) const
{
    QVector<Range> parts = split({token + 1, closing(token)}, ",");
    if (!parts.isEmpty() && parts.last().isEmpty()) {
        parts.removeLast(); // after a trailing comma
    }
    return parts;
}

QString Document::text(const Range &range) const
{
    QString text;
    for (int i = range.begin; i < range.end; ++i) {
        text += tokens.at(i).text;
    }
    return text;
}

Document parseQml(const QString &source)
{
    Document document = parse(source);
    ObjectParser(&document).run();
    return document;
}

Document parseScript(const QString &source)
{
    return parse(source);
}

} // namespace QmlScan
