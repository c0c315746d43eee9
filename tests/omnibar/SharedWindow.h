// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "OmniBarFixture.h"

#include <QTest>

#include <functional>
#include <memory>

//! One window for all tests of a class, because opening one takes longer than most tests. The class calls giveBack() in
//! cleanup() and close() in cleanupTestCase(); a test begins with
//!
//!     Conversation &bar = m_window.take();
//!     QVERIFY(bar.begin());
template<typename Fixture>
class SharedWindow
{
public:
    using Prepare = std::function<void(Fixture &)>;

    //! @param prepare called for each fixture that take() makes, before its window opens
    explicit SharedWindow(Prepare prepare = {})
        : m_prepare(std::move(prepare))
    {
    }

    //! The window of the test before, brought back to the state in which it opened. A new fixture, whose window is
    //! still to be opened, if there is none yet or if a difference remains.
    Fixture &take()
    {
        if (m_fixture && !m_fixture->bringBack()) {
            m_fixture.reset();
        }
        if (!m_fixture) {
            m_fixture = std::make_unique<Fixture>();
            m_fixture->keepForOthers();
            if (m_prepare) {
                m_prepare(*m_fixture);
            }
            m_fixture->open(); // a failure is reported by the test's own call
        }
        return *m_fixture;
    }

    //! A fixture for this test alone, which sets up something different or looks at how the window opens.
    Fixture &renew()
    {
        m_fixture.reset();
        m_fixture = std::make_unique<Fixture>();
        m_isForOneTest = true;
        return *m_fixture;
    }

    //! Fails the test if it left unexpected warnings. After a failed test the next one gets a new window.
    void giveBack()
    {
        if (m_fixture) {
            m_fixture->verifyNoWarnings();
        }
        if (m_isForOneTest || QTest::currentTestFailed()) {
            close();
        }
    }

    void close()
    {
        m_fixture.reset();
        m_isForOneTest = false;
    }

private:
    Prepare m_prepare;
    std::unique_ptr<Fixture> m_fixture;
    bool m_isForOneTest = false;
};
