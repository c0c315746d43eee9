// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NameCheck.h"

#include <QFileInfo>
#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>

#include <algorithm>

using QmlScan::Document;
using QmlScan::Member;
using QmlScan::Object;
using QmlScan::Range;
using QmlScan::Token;

namespace
{

//! An alias may point to itself by way of others: the search for its type ends here.
const int s_maximumDepth = 24;

//! What every object has in QML.
const QStringList s_common = {QStringLiteral("destroy"), QStringLiteral("toString"), QStringLiteral("hasOwnProperty")};

const QStringList s_assignments =
    QStringLiteral("= += -= *= /= %= **= &= |= ^= <<= >>= >>>= ++ --").split(QLatin1Char(' '));

QString kindName(Member::Kind kind)
{
    switch (kind) {
    case Member::Kind::Property:
        return QStringLiteral("a property");
    case Member::Kind::Function:
        return QStringLiteral("a function");
    case Member::Kind::Signal:
        return QStringLiteral("a signal");
    }
    return QString();
}

QString countText(const QPair<int, int> &arguments)
{
    if (arguments.second == QmlScan::AnyNumber) {
        return QStringLiteral("%1 or more").arg(arguments.first);
    }
    return arguments.first == arguments.second ? QString::number(arguments.first)
                                               : QStringLiteral("%1 to %2").arg(arguments.first).arg(arguments.second);
}

//! "1", "1 or 2"
QString countText(QVector<QPair<int, int>> arguments)
{
    std::sort(arguments.begin(), arguments.end());
    QStringList counts;
    for (const auto &overload : qAsConst(arguments)) {
        counts.append(countText(overload));
    }
    counts.removeDuplicates();
    return counts.join(QLatin1String(" or "));
}

bool accepts(const QVector<QPair<int, int>> &overloads, int count)
{
    return std::any_of(overloads.begin(), overloads.end(), [count](const QPair<int, int> &overload) {
        return overload.first <= count && count <= overload.second;
    });
}

//! "agentReplied" for "onAgentReplied"; "" for what is no handler.
QString signalOfHandler(const QString &name)
{
    if (name.size() < 3 || !name.startsWith(QLatin1String("on")) || !name.at(2).isUpper()) {
        return QString();
    }
    return name.at(2).toLower() + name.mid(3);
}

} // namespace

QString NameCheck::Finding::text() const
{
    return QStringLiteral("%1:%2: %3 %4").arg(file).arg(line).arg(name, problem);
}

// ---- What there is

void NameCheck::addFile(const QString &path, const QString &source)
{
    const bool isQml = path.endsWith(QLatin1String(".qml"));
    m_files.insert(path, isQml ? QmlScan::parseQml(source) : QmlScan::parseScript(source));
    if (isQml) {
        m_types.insert(QFileInfo(path).completeBaseName(), path);
    }
}

void NameCheck::addNativeObject(const QString &name, const QMetaObject *type)
{
    m_natives.insert(name, type);
}

void NameCheck::addHandedProperty(const QString &name, const QString &qmlType)
{
    m_handed.insert(name, qmlType);
}

void NameCheck::addBaseType(const QString &name, const QMetaObject *type)
{
    m_baseTypes.insert(name, type);
}

void NameCheck::addBaseType(const QString &name, const QStringList &properties)
{
    m_baseProperties.insert(name, properties);
}

NameCheck::Type NameCheck::qmlType(const QString &name) const
{
    const auto path = m_types.find(name.section(QLatin1Char('.'), -1));
    Type type;
    if (path != m_types.end() && !document(*path).objects.isEmpty()) {
        type.kind = Type::Kind::Qml;
        type.path = *path;
    }
    return type;
}

NameCheck::Type NameCheck::baseType(const QString &name) const
{
    Type type = qmlType(name);
    const auto meta = m_baseTypes.find(name);
    if (!type.isKnown() && meta != m_baseTypes.end()) {
        type.kind = Type::Kind::Native;
        type.meta = *meta;
        type.name = name;
    }
    return type;
}

QString NameCheck::nameOf(const Type &type) const
{
    switch (type.kind) {
    case Type::Kind::Qml: {
        const QString file = QFileInfo(type.path).fileName();
        const Object &object = document(type.path).objects.at(type.object);
        return type.object == 0 ? file
                                : QStringLiteral("%1 in %2").arg(object.id.isEmpty() ? object.type : object.id, file);
    }
    case Type::Kind::Native:
        return QString::fromLatin1(type.meta->className());
    default:
        return type.name;
    }
}

// ---- Members of a type

NameCheck::Use NameCheck::find(const Type &type, const QString &name, int depth) const
{
    Use use;
    if (depth > s_maximumDepth || name.at(0).isUpper() || s_common.contains(name)) {
        use.isCertain = false; // an attached object, or one that every object has
        return use;
    }
    switch (type.kind) {
    case Type::Kind::Qml:
        return findInQml(type, name, depth + 1);
    case Type::Kind::Native:
        return findInMeta(*type.meta, name);
    case Type::Kind::Value:
        break;
    case Type::Kind::Unknown:
        use.isCertain = false;
        break;
    }
    return use;
}

NameCheck::Use NameCheck::findInQml(const Type &type, const QString &name, int depth) const
{
    const Object &object = document(type.path).objects.at(type.object);
    const QString changed = QStringLiteral("Changed");
    for (const Member &member : object.members) {
        if (member.name == name) {
            return useOf(type.path, member, depth);
        }
        if (member.kind == Member::Kind::Property && member.name + changed == name) {
            Use use;
            use.isFound = true;
            use.kind = Member::Kind::Signal;
            use.arguments = {{0, 0}};
            return use;
        }
    }
    const auto properties = m_baseProperties.find(object.type);
    if (properties != m_baseProperties.end()) {
        Use use;
        use.isFound = properties->contains(name);
        return use;
    }
    return find(baseType(object.type), name, depth);
}

NameCheck::Use NameCheck::findInMeta(const QMetaObject &meta, const QString &name)
{
    Use use;
    const int property = meta.indexOfProperty(name.toLatin1().constData());
    if (property >= 0) {
        use.isFound = true;
        use.isWritable = meta.property(property).isWritable();
        return use;
    }
    for (int i = 0; i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.access() == QMetaMethod::Public && QString::fromLatin1(method.name()) == name) {
            use.isFound = true;
            use.isWritable = false;
            use.kind = method.methodType() == QMetaMethod::Signal ? Member::Kind::Signal : Member::Kind::Function;
            use.arguments.append({method.parameterCount(), method.parameterCount()});
        }
    }
    return use;
}

NameCheck::Use NameCheck::useOf(const QString &path, const Member &member, int depth) const
{
    Use use;
    use.isFound = true;
    use.kind = member.kind;
    use.isWritable = member.kind == Member::Kind::Property && !member.isReadOnly;
    if (member.kind != Member::Kind::Property) {
        use.arguments = {{member.minimumArguments, member.maximumArguments}};
        return use;
    }
    if (m_handed.contains(member.name)) {
        use.type = qmlType(m_handed.value(member.name));
    } else if (member.object >= 0) {
        use.type = {Type::Kind::Qml, path, member.object, QString(), nullptr};
    } else if (!member.value.isEmpty()) {
        use.type = typeOfExpression(path, member.value, depth);
        if (member.type == QLatin1String("alias")) {
            const Use target = useOfChain(path, member.value, depth);
            use.isWritable = !target.isFound || target.isWritable;
        }
    }
    if (!use.type.isKnown()) {
        use.type = baseType(member.type);
    }
    return use;
}

// ---- Types of names and expressions

NameCheck::Type NameCheck::typeOfName(const QString &path, int token, int depth) const
{
    const Document &file = document(path);
    const QString name = file.tokens.at(token).text;
    if (depth > s_maximumDepth) {
        return {};
    }
    if (m_handed.contains(name)) {
        return qmlType(m_handed.value(name));
    }
    const QmlScan::Local *innermost = nullptr;
    for (const QmlScan::Local &local : file.locals) {
        if (local.name == name && local.scope.contains(token)
            && (!innermost || local.scope.end <= innermost->scope.end)) {
            innermost = &local;
        }
    }
    if (innermost) {
        return typeOfExpression(path, innermost->value, depth + 1);
    }
    for (int i = 0; i < file.objects.size(); ++i) {
        if (file.objects.at(i).id == name) {
            return {Type::Kind::Qml, path, i, QString(), nullptr};
        }
    }
    for (int i = file.owners.at(token); i >= 0; i = file.objects.at(i).parent) {
        const Use use = find({Type::Kind::Qml, path, i, QString(), nullptr}, name, depth + 1);
        if (use.isFound) {
            return use.type;
        }
    }
    const auto native = m_natives.find(name);
    if (native == m_natives.end()) {
        return {};
    }
    return {*native ? Type::Kind::Native : Type::Kind::Value, QString(), 0, name, *native};
}

NameCheck::Type NameCheck::typeOfExpression(const QString &path, const Range &range, int depth) const
{
    const Document &file = document(path);
    if (range.isEmpty() || depth > s_maximumDepth || file.split(range, "=>").size() > 1) {
        return {};
    }
    if (file.is(range.begin, "(") && file.closing(range.begin) == range.end - 1) {
        return typeOfExpression(path, {range.begin + 1, range.end - 1}, depth + 1);
    }
    // "condition ? value : value" and "value || value": the first value whose type is known.
    const QVector<Range> choices = file.split(range, "?");
    QVector<Range> values = file.split(choices.size() > 1 ? Range {choices.at(1).begin, range.end} : range,
                                       choices.size() > 1 ? ":" : "||");
    if (values.size() > 1) {
        for (const Range &value : qAsConst(values)) {
            const Type type = typeOfExpression(path, value, depth + 1);
            if (type.isKnown()) {
                return type;
            }
        }
        return {};
    }
    const Range last = file.split(range, "&&").last();
    return last.begin == range.begin ? useOfChain(path, range, depth).type : typeOfExpression(path, last, depth + 1);
}

//! The last member of "name.name.name"; not found for any other expression.
NameCheck::Use NameCheck::useOfChain(const QString &path, const Range &range, int depth) const
{
    const Document &file = document(path);
    for (int i = range.begin; i < range.end; ++i) {
        if ((i - range.begin) % 2 == 0 ? !file.isName(i) : !file.is(i, ".")) {
            return {};
        }
    }
    Use use;
    use.isFound = true;
    use.type = typeOfName(path, range.begin, depth + 1);
    for (int i = range.begin + 2; i < range.end; i += 2) {
        use = find(use.type, file.tokens.at(i).text, depth + 1);
        if (!use.isFound) {
            return {};
        }
    }
    return use;
}

// ---- Checks

QVector<NameCheck::Finding> NameCheck::check(const QString &path) const
{
    const Document &file = document(path);
    Findings findings;
    for (int i = 0; i < file.tokens.size(); ++i) {
        if (file.isName(i) && !file.is(i - 1, ".")) {
            checkChain(path, i, &findings);
            checkNativeCall(path, i, &findings);
            checkTypeof(path, i, &findings);
        }
    }
    for (const Object &object : file.objects) {
        if (object.type == QLatin1String("Connections")) {
            checkConnections(path, object, &findings);
        }
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.line < b.line; });
    return findings;
}

//! Every member of the chain whose first name is at @p token.
void NameCheck::checkChain(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    if (!file.is(token + 1, ".")) {
        return;
    }
    Type type = typeOfName(path, token, 0);
    for (int i = token + 2; type.isKnown() && file.is(i - 1, ".") && file.isName(i); i += 2) {
        const Use use = find(type, file.tokens.at(i).text);
        if (!use.isFound && use.isCertain) {
            findings->append({path, file.tokens.at(i).line, file.text({token, i + 1}),
                              QStringLiteral("is not declared by %1").arg(nameOf(type))});
        }
        if (!use.isFound) {
            return;
        }
        checkUse(path, {token, i + 1}, use, findings);
        type = use.type;
    }
}

//! The call of, or the assignment to, a member at the end of @p chain.
void NameCheck::checkUse(const QString &path, const Range &chain, const Use &use, Findings *findings) const
{
    const Document &file = document(path);
    const auto report = [&](const QString &problem) {
        findings->append({path, file.tokens.at(chain.end - 1).line, file.text(chain), problem});
    };
    const Token next = chain.end < file.tokens.size() ? file.tokens.at(chain.end) : Token {};
    const bool isStep = file.is(chain.begin - 1, "++") || file.is(chain.begin - 1, "--");
    if (file.is(chain.end, "(")) {
        const QVector<Range> arguments = file.arguments(chain.end);
        const bool spreads = std::any_of(arguments.begin(), arguments.end(),
                                         [&](const Range &argument) { return file.is(argument.begin, "..."); });
        // A property may hold a function, of which nothing is known.
        if (use.kind != Member::Kind::Property && !spreads && !accepts(use.arguments, arguments.size())) {
            report(QStringLiteral("takes %1 arguments, but is called with %2")
                       .arg(countText(use.arguments))
                       .arg(arguments.size()));
        }
    } else if (next.kind == Token::Kind::Punctuator && !file.is(chain.end, ".")
               && (s_assignments.contains(next.text) || isStep) && !use.isWritable) {
        report(use.kind == Member::Kind::Property ? QStringLiteral("is read-only")
                                                  : QStringLiteral("is %1, not a property").arg(kindName(use.kind)));
    }
}

//! "Native.call(object, "name", ...)" and "Native.offers(object, "name")"
void NameCheck::checkNativeCall(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    const QString function = file.text({token, std::min(token + 3, int(file.tokens.size()))});
    const bool isCall = function == QLatin1String("Native.call");
    if ((!isCall && function != QLatin1String("Native.offers")) || !file.is(token + 3, "(")) {
        return;
    }
    const QVector<Range> arguments = file.arguments(token + 3);
    if (arguments.size() < 2 || file.tokens.at(arguments.at(1).begin).kind != Token::Kind::String) {
        return;
    }
    const Type type = typeOfExpression(path, arguments.at(0), 0);
    const QString name = file.text(arguments.at(1));
    const Use use = find(type, name);
    const auto report = [&](const QString &problem) {
        const QString chain = file.text(arguments.at(0)) + QLatin1Char('.') + name;
        findings->append({path, file.tokens.at(arguments.at(1).begin).line, chain, problem});
    };
    const int count = arguments.size() - 2;
    if (!use.isFound && use.isCertain) {
        report(QStringLiteral("is not declared by %1").arg(nameOf(type)));
    } else if (use.isFound && use.kind != Member::Kind::Function) {
        report(QStringLiteral("is %1, not a function").arg(kindName(use.kind)));
    } else if (use.isFound && isCall && !accepts(use.arguments, count)) {
        report(QStringLiteral("takes %1 arguments, but is called with %2").arg(countText(use.arguments)).arg(count));
    }
}

//! "typeof name !== "undefined"" asks for a native object.
void NameCheck::checkTypeof(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    const QString name = token + 1 < file.tokens.size() ? file.tokens.at(token + 1).text : QString();
    const bool asks = file.tokens.at(token).text == QLatin1String("typeof")
        && (file.is(token + 2, "!==") || file.is(token + 2, "===") || file.is(token + 2, "!=")
            || file.is(token + 2, "=="))
        && token + 3 < file.tokens.size() && file.tokens.at(token + 3).text == QLatin1String("undefined");
    const bool isLocal = std::any_of(file.locals.begin(), file.locals.end(), [&](const QmlScan::Local &local) {
        return local.name == name && local.scope.contains(token);
    });
    if (asks && !isLocal && !m_natives.contains(name)) {
        findings->append({path, file.tokens.at(token).line, name, QStringLiteral("is no native object")});
    }
}

//! Handlers, of signals that the target must have.
void NameCheck::checkConnections(const QString &path, const Object &object, Findings *findings) const
{
    const Type target = typeOfExpression(path, object.bindings.value(QStringLiteral("target")), 0);
    for (const Member &handler : object.members) {
        const QString signal = signalOfHandler(handler.name);
        if (handler.kind != Member::Kind::Function || signal.isEmpty() || !target.isKnown()) {
            continue;
        }
        const Use use = find(target, signal);
        const auto report = [&](const QString &problem) {
            findings->append({path, handler.line, handler.name, problem});
        };
        if (use.isFound ? use.kind != Member::Kind::Signal : use.isCertain) {
            report(QStringLiteral("handles \"%1\", which is no signal of %2").arg(signal, nameOf(target)));
        } else if (use.isFound
                   && std::none_of(use.arguments.begin(), use.arguments.end(), [&](const QPair<int, int> &overload) {
                          return handler.maximumArguments <= overload.second;
                      })) {
            report(QStringLiteral("has %1 parameters, but \"%2\" of %3 has %4")
                       .arg(handler.maximumArguments)
                       .arg(signal, nameOf(target), countText(use.arguments)));
        }
    }
}

QVector<NameCheck::Finding> NameCheck::checkFake(const QString &fake, const QString &real,
                                                 const QStringList &except) const
{
    const Type fakeType = qmlType(fake);
    Type realType = qmlType(real);
    if (m_natives.contains(real)) {
        realType = {Type::Kind::Native, QString(), 0, real, m_natives.value(real)};
    }
    Findings findings;
    for (const Member &member : document(fakeType.path).objects.at(fakeType.object).members) {
        if (except.contains(member.name)) {
            continue;
        }
        const Use use = find(realType, member.name);
        const auto report = [&](const QString &problem) {
            findings.append({fakeType.path, member.line, member.name, problem});
        };
        if (!use.isFound) {
            report(QStringLiteral("is not declared by %1").arg(nameOf(realType)));
        } else if (use.kind != member.kind) {
            report(
                QStringLiteral("is %1, but %2 in %3").arg(kindName(member.kind), kindName(use.kind), nameOf(realType)));
        } else if (member.kind != Member::Kind::Property
                   && !use.arguments.contains({member.minimumArguments, member.maximumArguments})) {
            report(QStringLiteral("takes %1 arguments, but %2 in %3")
                       .arg(countText({member.minimumArguments, member.maximumArguments}), countText(use.arguments),
                            nameOf(realType)));
        }
    }
    return findings;
}
