#include "ui/MainWindowHost.h"

#include "maps/ScanProgress.h"
#include "support/AppContext.h"

#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "ui/FormServices.h"
#include "ui/QtPrompts.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QAbstractEventDispatcher>
#include <QWidget>

namespace steward {

namespace {

/// The loaded forms: the application's windows, without pop-ups, tooltips and the like.
QList<QWidget*> loadedForms()
{
    QList<QWidget*> forms;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* w : windows) {
        const Qt::WindowType type = w->windowType();
        if (type == Qt::Window || type == Qt::Dialog || type == Qt::Tool || type == Qt::Sheet)
            forms.append(w);
    }
    return forms;
}

} // namespace

QtWindowHost::QtWindowHost(AppContext& app, QtPrompts* prompts, QObject* parent)
    : QObject(parent), m_app(app), m_prompts(prompts)
{}

QtWindowHost::~QtWindowHost()
{
    if (m_window)
        delete m_window.data();
}

frmMain* QtWindowHost::mainWindow() const { return m_window && !m_window->isUnloading() ? m_window.data() : nullptr; }

void QtWindowHost::addWindowSetup(std::function<void(frmMain&)> setup) { m_setups.push_back(std::move(setup)); }

ServerProfile* QtWindowHost::loadMainWindow()
{
    if (mainWindow())
        unloadMainWindow();
    auto* window = new frmMain(m_app);

    m_window = window;
    window->setRoutes(&m_routes);
    connect(window, &QObject::destroyed, this, &QtWindowHost::mainWindowDestroyed);
    if (m_prompts)
        m_prompts->setOwner(window);
    for (const auto& setup : m_setups)
        setup(*window);
    MainFormLoad(m_app, window->profile(), *window);
    return &window->profile();
}

void QtWindowHost::showMainWindow()
{
    if (frmMain* window = mainWindow())
        window->show();
}

void QtWindowHost::unloadMainWindow()
{
    if (frmMain* window = mainWindow())
        window->unload();
}

void QtWindowHost::closeAllForms()
{
    for (QWidget* form : loadedForms()) {
        if (form->objectName() == QLatin1String("frmMain") || isUnloading(form))
            continue;
        try {
            unloadForm(form);
        } catch (...) {
            // Errors are ignored on the way out.
        }
    }
    try {
        unloadMainWindow();
    } catch (...) {
    }
}

void QtWindowHost::unloadFormNamed(const QString& name)
{
    for (QWidget* form : loadedForms())
        if (form->objectName() == name)
            unloadForm(form);
}

void QtWindowHost::unloadScanner()
{
    // The scanner's window refuses a plain close: the progress that loaded it unloads it.
    if (m_app.services.scanProgress)
        m_app.services.scanProgress->unload();
    unloadFormNamed(QStringLiteral("frmScanner"));
}

void QtWindowHost::minimizeMainWindow()
{
    if (frmMain* window = mainWindow(); window && !window->isMinimized())
        window->showMinimized();
}

void quitWhenMainWindowGone(QtWindowHost& host)
{
    QApplication::setQuitOnLastWindowClosed(false);
    // Only when the event loop has nothing left to do: a restart runs inside one event,
    // so it has its new main window by then.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &host, [&host] {
        if (host.mainWindow())
            return;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && (w->windowType() == Qt::Window || w->windowType() == Qt::Dialog))
                return;
        QCoreApplication::quit();
    });
}

} // namespace steward
