// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

//! @file The types that NameCheck knows, and their members.

#include "NameCheck.h"

#include <QFileInfo>
#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>

using QmlScan::Document;
using QmlScan::Member;
using QmlScan::Object;
using QmlScan::Range;

namespace
{

//! Limits the search for the type of an alias, because aliases can refer to each other in a circle.
const int s_maximumDepth = 24;

//! Members that every object has in QML.
const QStringList s_common = {QStringLiteral("destroy"), QStringLiteral("toString"), QStringLiteral("hasOwnProperty")};

} // namespace

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
