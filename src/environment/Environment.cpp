// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Environment.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace
{

//! Ends with a null pointer, like environ.
using Variables = std::vector<char *>;

bool hasName(std::string_view variable, std::string_view name)
{
    return variable.starts_with(name) && variable.substr(name.size()).starts_with('=');
}

//! All variables but one.
Variables variablesWithout(std::string_view name)
{
    Variables variables;
    for (char **variable = environ; variable && *variable; ++variable) {
        if (!hasName(*variable, name)) {
            variables.push_back(*variable);
        }
    }
    return variables;
}

//! "NAME=VALUE", which is never freed. The same variable is the same pointer.
char *variableOf(const char *name, const QByteArray &value)
{
    static auto &variables = *new std::set<std::string>;
    return const_cast<char *>(variables.insert(std::string(name) + '=' + value.constData()).first->c_str());
}

//! Replaces the environment in a single assignment, which POSIX allows. The arrays are never freed. An equal one is
//! used again, so that memory doesn't grow when a variable is set and unset all the time.
void publish(Variables variables)
{
    static auto &published = *new std::list<Variables>;
    variables.push_back(nullptr);
    auto array = std::find(published.begin(), published.end(), variables);
    if (array == published.end()) {
        array = published.insert(array, std::move(variables));
    }
    std::atomic_ref<char **>(environ).store(array->data(), std::memory_order_release);
}

} // namespace

void Environment::set(const char *name, const QByteArray &value)
{
    Variables variables = variablesWithout(name);
    variables.push_back(variableOf(name, value));
    publish(std::move(variables));
}

void Environment::unset(const char *name)
{
    publish(variablesWithout(name));
}

Environment::TemporaryVariable::TemporaryVariable(const char *name, const QByteArray &value)
    : m_name(qEnvironmentVariableIsSet(name) ? nullptr : name)
{
    if (m_name) {
        set(m_name, value);
    }
}

Environment::TemporaryVariable::~TemporaryVariable()
{
    if (m_name) {
        unset(m_name);
    }
}
