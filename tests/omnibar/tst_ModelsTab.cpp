// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"
#include "ScriptedSdk.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

constexpr int s_manyModels = 300;

} // namespace

//! The tab for the default model in the settings sheet.
class tst_ModelsTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void words();
    void emptyList();
    void look();
    void rowChooses_data();
    void rowChooses();
    void arrowKeysWalkThroughTheList();
    void buttons_data();
    void buttons();
    void search();
    void manyModels();
    void opensAtTheCurrentModel();
    void freeCheck();
    void checkCanRunOnceAtATime();
    void hostileTexts();

private:
    //! Opens the tab with a list of models.
    bool begin(Conversation &bar, const QString &models);
    void send(Conversation &bar, const QString &signal) { bar.evaluate(text("sdk.") + signal); }
    QList<QQuickItem *> rows(Conversation &bar) const;

    ScriptedSdk *m_sdk = nullptr;
    std::unique_ptr<ScriptedSdk> m_owned;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) {
        m_owned = std::make_unique<ScriptedSdk>(bar);
        m_sdk = m_owned.get();
    }};
};

namespace
{

const QString s_three =
    QStringLiteral("[{ fullId: 'demo/small' }, { fullId: 'demo/large' }, { fullId: 'work/tiny-free' }]");

} // namespace

bool tst_ModelsTab::begin(Conversation &bar, const QString &models)
{
    if (!bar.begin()) {
        return false;
    }
    bar.click("settingsBtn");
    send(bar, text("modelsListed(") + models + text(")"));
    const bool isOpen = bar.openTab(text("Models"));
    m_sdk->takeCalls();
    return isOpen;
}

QList<QQuickItem *> tst_ModelsTab::rows(Conversation &bar) const
{
    QList<QQuickItem *> rows = bar.items("modelRow");
    std::sort(rows.begin(), rows.end(), [](QQuickItem *a, QQuickItem *b) { return a->y() < b->y(); });
    return rows;
}

void tst_ModelsTab::words()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    QCOMPARE(Conversation::textsIn(bar.item("modelsTab")),
             QStringList({text("3 models · 1 free"), text("Default model: demo/small"), text("Refresh models"),
                          text("Free model check"),
                          text("Test free models to find which ones respond, then auto-set the fastest as default."),
                          text("Check free providers"), text("Search models..."), text("demo/small"), text("default"),
                          text("demo/large"), text("work/tiny-free"), text("free"), text("Set selected as default")}));
    bar.setProperty("modelsLoading", true);
    QVERIFY(!bar.isSeen(bar.item("modelCount")));
    QCOMPARE(bar.item("modelsStatus")->property("text").toString(), text("Loading models..."));
    bar.setProperty("modelsLoading", false);
    bar.setProperty("modelsStatusMessage", text("No server"));
    QCOMPARE(bar.item("modelsStatus")->property("text").toString(), text("No server"));
}

void tst_ModelsTab::emptyList()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, text("[]")));
    QCOMPARE(bar.item("modelList")->height(), 72.0);
    // The server may still be starting, so it is asked again.
    QVERIFY(!bar.isSeen(bar.item("noModels")));
    send(bar, text("modelsListed([])"));
    send(bar, text("modelsListed([])"));
    QVERIFY(bar.isSeen(bar.item("noModels")));
    QCOMPARE(bar.item("noModels")->property("text").toString(), text("No models loaded. Tap Refresh models."));
    QCOMPARE(bar.item("modelsStatus")->property("text").toString(), text("No models found for current provider."));
    QCOMPARE(bar.item("defaultModel")->property("text").toString(), text("Default model: not set"));
    QVERIFY(!bar.item("setDefaultModelBtn")->isEnabled());
    QVERIFY(!bar.isSeen(bar.item("modelCount")));
    bar.screenshot("models-empty");
}

void tst_ModelsTab::look()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "models-light" : "models");
        QQuickItem *list = bar.item("modelList");
        QCOMPARE(list->height(), 3 * 36 + 4.0);
        const QList<QQuickItem *> rows = this->rows(bar);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(1)->height(), 34.0);
        QCOMPARE(rows.at(1)->y() - rows.at(0)->y(), 36.0);
        QCOMPARE(colourOf(backgroundOf(rows.at(0))), rgba(0.60, 0.20, 0.98, isLight ? 0.22 : 0.38));
        QCOMPARE(colourOf(backgroundOf(rows.at(1))), rgba(0, 0, 0, 0));
        QVERIFY(bar.isSeen(bar.itemIn(rows.at(0), text("defaultBadge"))));
        QVERIFY(!bar.isSeen(bar.itemIn(rows.at(1), text("defaultBadge"))));
        QVERIFY(bar.isSeen(bar.itemIn(rows.at(2), text("freeBadge"))));
    }
}

void tst_ModelsTab::rowChooses_data()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void tst_ModelsTab::rowChooses()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    press(bar, rows(bar).at(2), by);
    for (const char *property :
         {"currentModelId", "pendingDefaultModelId", "sdk.currentModel", "bridge.currentModel"}) {
        QCOMPARE(bar.property(property).toString(), text("work/tiny-free"));
    }
    QVERIFY(bar.isSeen(bar.itemIn(rows(bar).at(2), text("defaultBadge"))));
}

void tst_ModelsTab::arrowKeysWalkThroughTheList()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    bar.focus(bar.item("modelSearchField"));
    bar.key(Qt::Key_Tab);
    QVERIFY(rows(bar).at(0)->hasActiveFocus());
    bar.key(Qt::Key_Down);
    QTRY_VERIFY(rows(bar).at(1)->hasActiveFocus());
    // One stop for the whole list.
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.item("setDefaultModelBtn")->hasActiveFocus());
    bar.key(Qt::Key_Backtab);
    QVERIFY(rows(bar).at(1)->hasActiveFocus());
    // A new list under the focus.
    send(bar, text("modelsListed([{ fullId: 'demo/new' }].concat(%1))").arg(s_three));
    QVERIFY(rows(bar).at(2)->hasActiveFocus());
    QCOMPARE(rows(bar).at(2)->property("label").toString(), text("demo/large"));
}

void tst_ModelsTab::buttons_data()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void tst_ModelsTab::buttons()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    press(bar, bar.item("refreshModelsBtn"), by);
    QCOMPARE(bar.property("modelsLoading").toBool(), true);
    send(bar, text("modelsListed(%1)").arg(s_three));
    bar.setProperty("pendingDefaultModelId", text("demo/large"));
    press(bar, bar.item("setDefaultModelBtn"), by);
    QCOMPARE(bar.property("currentModelId").toString(), text("demo/large"));
    press(bar, bar.item("checkFreeBtn"), by);
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("checkFreeProviders()")});
    send(bar, text("freeProvidersChecked({ results: [], recommended: { model: 'work/tiny-free', ok: true } })"));
    QVERIFY(bar.settle());
    press(bar, bar.item("useRecommendedBtn"), by);
    QCOMPARE(bar.property("currentModelId").toString(), text("work/tiny-free"));
    QCOMPARE(bar.item("freeCheckStatus")->property("text").toString(), text("Default model set to: work/tiny-free"));
}

void tst_ModelsTab::search()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    QVERIFY(!bar.isSeen(bar.item("clearModelSearchBtn")));
    bar.click("modelSearchField");
    bar.type("FREE");
    QCOMPARE(rows(bar).size(), 1);
    QCOMPARE(bar.item("modelList")->height(), 72.0);
    bar.type("x");
    QTRY_VERIFY(bar.isSeen(bar.item("noModels")));
    QCOMPARE(bar.item("noModels")->property("text").toString(), text("No model matches."));
    bar.screenshot("models-no-match");
    bar.click("clearModelSearchBtn");
    QCOMPARE(bar.item("modelSearchField")->property("text").toString(), QString());
    QVERIFY(bar.item("modelSearchField")->hasActiveFocus());
    QTRY_COMPARE(rows(bar).size(), 3);
    // The filter outlives the page.
    bar.type("large");
    QVERIFY(bar.openTab(text("Look")));
    QVERIFY(bar.openTab(text("Models")));
    QTRY_COMPARE(bar.item("modelSearchField")->property("text").toString(), text("large"));
    QCOMPARE(rows(bar).size(), 1);
}

void tst_ModelsTab::manyModels()
{
    Conversation &bar = m_window.take();
    QVERIFY(
        begin(bar, text("Array.from({ length: %1 }, (_, i) => ({ fullId: 'demo/model-' + i }))").arg(s_manyModels)));
    QQuickItem *list = bar.item("modelList");
    QCOMPARE(list->height(), 280.0);
    QVERIFY(rows(bar).size() < 30);
    // Beside the scroll bar.
    QVERIFY(rows(bar).first()->width() < list->width() - 8);
    QCOMPARE(bar.item("modelCount")->property("text").toString(), text("300 models · 0 free"));
    bar.focus(rows(bar).first());
    for (int i = 0; i < 20; ++i) {
        bar.key(Qt::Key_Down);
    }
    QVERIFY(bar.window()->activeFocusItem()->property("label").toString() == text("demo/model-20"));
    QTRY_VERIFY(bar.place(list).contains(bar.place(bar.window()->activeFocusItem())));
    bar.screenshot("models-many");
}

void tst_ModelsTab::opensAtTheCurrentModel()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setProperty("currentModelId", text("demo/model-250"));
    QVERIFY(
        begin(bar, text("Array.from({ length: %1 }, (_, i) => ({ fullId: 'demo/model-' + i }))").arg(s_manyModels)));
    const auto isListed = [&] {
        const QList<QQuickItem *> rows = this->rows(bar);
        return std::any_of(rows.cbegin(), rows.cend(), [&](QQuickItem *row) {
            return row->property("label") == text("demo/model-250")
                && bar.place(bar.item("modelList")).contains(bar.place(row));
        });
    };
    QTRY_VERIFY(isListed());
}

void tst_ModelsTab::freeCheck()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    bar.click("checkFreeBtn");
    QCOMPARE(bar.item("freeCheckStatus")->property("text").toString(),
             text("Testing free models (this may take a minute)..."));
    send(bar,
         text("freeProvidersChecked({ results: [{ model: 'work/tiny-free', ok: true, responseMs: 640 },"
              " { model: 'demo/echo-free', ok: false, error: 'No token is set for this provider of models at all' }, { "
              "model: 'x' }],"
              " recommended: { model: 'work/tiny-free', ok: true } })"));
    QVERIFY(bar.settle());
    QList<QQuickItem *> results = bar.items("freeCheckRow");
    QCOMPARE(results.size(), 3);
    QCOMPARE(results.at(0)->height(), 32.0);
    QCOMPARE(colourOf(bar.itemIn(results.at(0), text("freeCheckDot"))), rgb(text("#4ade80")));
    QCOMPARE(colourOf(bar.itemIn(results.at(1), text("freeCheckDot"))), rgb(text("#ef4444")));
    QStringList outcomes;
    for (QQuickItem *result : qAsConst(results)) {
        outcomes.append(bar.itemIn(result, text("freeCheckOutcome"))->property("text").toString());
    }
    QCOMPARE(outcomes, QStringList({text("640ms"), text("No token is set for this provider of mod"), text("failed")}));
    QCOMPARE(bar.item("useRecommendedBtn")->property("label").toString(), text("Use recommended: work/tiny-free"));
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "models-check-light" : "models-check");
    }
}

void tst_ModelsTab::checkCanRunOnceAtATime()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, s_three));
    QQuickItem *button = bar.item("checkFreeBtn");
    bar.click(button);
    QCOMPARE(button->property("label").toString(), text("Testing models..."));
    QVERIFY(!button->isEnabled());
    QVERIFY(!bar.isSeen(bar.item("useRecommendedBtn")));
    send(bar, text("error('no server')"));
    QVERIFY(button->isEnabled());
    QCOMPARE(bar.item("freeCheckStatus")->property("text").toString(), text("no server"));
}

void tst_ModelsTab::hostileTexts()
{
    Conversation &bar = m_window.take();
    const QString hostile = text("<img src='http://127.0.0.1:9/x'>&R&D\\u202e\\n") + text("x").repeated(5000);
    QVERIFY(begin(bar, text("[{ fullId: \"%1\", displayName: \"%1\" }]").arg(hostile)));
    send(bar,
         text("freeProvidersChecked({ results: [{ model: \"%1\", error: \"%1\" }], recommended: { model: \"%1\", ok: "
              "true } })")
             .arg(hostile));
    bar.click("useRecommendedBtn");
    bar.click("refreshModelsBtn");
    send(bar, text("error(\"%1\")").arg(hostile));
    QVERIFY(bar.settle());
    bar.screenshot("models-hostile");
    // Cut on the tab, whole in the tooltip.
    for (const char *name : {"defaultModel", "freeCheckModel", "freeCheckOutcome"}) {
        QVERIFY2(bar.item(name)->property("whole").toString().size() > 999, name);
        QVERIFY2(bar.item(name)->property("text").toString().size() < 300, name);
    }
    // An error's text is the bridge's too.
    for (const char *name : {"modelsStatus", "freeCheckStatus"}) {
        const QQuickItem *const status = bar.item(name);
        QVERIFY2(status->isVisible(), name);
        QVERIFY2(status->height() < 100, name);
        QVERIFY2(!status->property("text").toString().contains(QLatin1Char('\n')), name);
        QVERIFY2(!status->property("text").toString().contains(QChar(0x202e)), name);
    }
    QCOMPARE(Conversation::looseTexts(bar.item("modelsTab")), QStringList());
}

REGISTER_TEST(tst_ModelsTab, QGuiApplication)

#include "tst_ModelsTab.moc"
