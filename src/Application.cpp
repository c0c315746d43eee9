// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Application.h"

#include "DataDirectories.h"
#include "NativeObjects.h"

#include <KLocalizedString>

#include <QIcon>
#include <QLibrary>

namespace
{

//! Plasma's QML plugins pull in this library on the QML loader's thread, where its static objects then warn of a parent
//! in another thread. Loaded here first, on the main thread, it is silent. Where it is missing nothing is lost.
void loadXmlGuiOnMainThread()
{
    QLibrary(QStringLiteral("KF5XmlGui"), 5).load();
}

} // namespace

void Application::prepareEnvironment()
{
    // Attached files are read by XMLHttpRequest, which is closed to local files without this.
    qputenv("QML_XHR_ALLOW_FILE_READ", "1");
}

KAboutData Application::describe()
{
    KLocalizedString::setApplicationDomain("loomra-kde");

    KAboutData about(QStringLiteral("loomra-kde"), QStringLiteral("Loomra KDE"), QStringLiteral(TOVICTL_VERSION),
                     QStringLiteral("A KDE user interface of the loomra agent tool"), KAboutLicense::GPL);
    KAboutData::setApplicationData(about);
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("loomra-kde")));
    return about;
}

Application::Application(int &argc, char **argv)
    : m_application(argc, argv)
    , m_about((preferDataBesideExecutable(), describe()))
{
    // ChatModel and ProjectModel are registered for "org.kde.loomra" 1.0 here when they join.
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    NativeObjects::create(&m_application, &m_engine);

    m_arguments = QCoreApplication::arguments();
    const LaunchMode mode = launchModeOf(m_arguments);
    m_rootFile = rootFileOf(mode);
    if (mode == LaunchMode::OmniBar) {
        loadXmlGuiOnMainThread();
    }
    load();
}

void Application::load()
{
    // Queued, as the signal comes from within load(), when no event loop runs yet that exit() could end.
    QObject::connect(
        &m_engine, &QQmlApplicationEngine::objectCreated, &m_application,
        [this](const QObject *object, const QUrl &url) {
            if (!object && url == m_rootFile) {
                QCoreApplication::exit(-1);
            }
        },
        Qt::QueuedConnection);
    m_engine.load(m_rootFile);
}

int Application::exec()
{
    return m_application.exec();
}
