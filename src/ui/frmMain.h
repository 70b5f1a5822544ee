#pragma once
// The main window: a view of the server profile. Its pages, frames and controls come
// from the layout tables; every field of the profile has its bound control, and the
// command buttons, double clicks and right clicks go out as events to the routes of the
// window host.
#include "commands/MainFormLoad.h"
#include "ui/UiEvents.h"

#include <QHash>
#include <QMainWindow>
#include <memory>

class QGridLayout;
class QTabWidget;

namespace steward {

class AppContext;
class Field;
class ServerProfile;
struct PageLayout;
struct Section;

class frmMain : public QMainWindow, public FormLoadHost {
    Q_OBJECT
public:
    /// The window with a fresh profile at its design defaults.
    explicit frmMain(AppContext& app, QWidget* parent = nullptr);
    ~frmMain() override;

    AppContext& app() const { return m_app; }
    ServerProfile& profile() const { return *m_profile; }

    /// A control by its key: a field's key ("txtServerConfig(12)", "lsvMapRotation"), a
    /// caption label's name or a command's name ("cmdBOTs(3)"). Null if there is none.
    QWidget* control(const QString& key) const;
    template <typename T>
    T* control(const QString& key) const
    {
        return qobject_cast<T*>(control(key));
    }
    QTabWidget* mainTab() const { return m_mainTab; }

    /// The routes that answer the controls' events; null sends them nowhere.
    void setRoutes(const UiRoutes* routes) { m_routes = routes; }
    /// Sends an event of a control to its route, as a click or right click would.
    void raiseEvent(const UiEvent& event);

    /// Unloads the window: it is minimised, closed and then destroyed.
    void unload();
    bool isUnloading() const;

    // The window side of the load.
    void setRotationColumns(const QList<int>& twips) override;
    void setSizeTwips(int height, int width) override;
    void centerForm() override;
    void disableCloseMenu() override;

signals:
    /// Every event of a control, before its route runs.
    void uiEvent(const steward::UiEvent& event);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* buildPage(const PageLayout& layout);
    void buildSection(QGridLayout* grid, const Section& section);
    QWidget* makeControl(const QString& key, QWidget* parent);
    QWidget* makeFieldControl(Field& field, QWidget* parent);
    QWidget* makeStaticControl(const QString& key, QWidget* parent);
    QWidget* makeItem(const QString& item, QWidget* parent, QWidget** captionLabel);
    QTabWidget* makeTabs(const QString& key, const QList<PageLayout>& pages, QWidget* parent);
    void watchEvents(QWidget* widget, const QString& key);
    void applyPointer();

    AppContext& m_app;
    std::unique_ptr<ServerProfile> m_profile;
    QHash<QString, QWidget*> m_controls;
    QTabWidget* m_mainTab = nullptr;
    const UiRoutes* m_routes = nullptr;
};

} // namespace steward
