#pragma once
// frmBOT, the bot picker: a name, skill, team and ping, and a model from the stock
// models (tab "Standard") or from the installed models that the scan found (tab
// "Custom"). OK appends the bot to the main window's roster. The form shows the scan's
// progress itself.
#include "maps/ScanProgress.h"

#include <QDialog>
#include <QList>
#include <QStringList>
#include <memory>

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QRadioButton;
class QTabWidget;
class QTableWidget;

namespace steward {

class AppContext;
class ServerProfile;
class frmMain;

class frmBOT : public QDialog {
    Q_OBJECT
public:
    /// The picker for the roster of mainProfile, loaded: lists filled, the installed
    /// models read from BOT.txt, on top, centred, its close button off.
    frmBOT(AppContext& app, ServerProfile& mainProfile, QWidget* parent = nullptr);

    /// OK (0), Cancel (1) and Scan (2). A failure unloads the form and is shown in an
    /// information box titled with the error's source.
    void cmdOk_Click(int index);

    /// True while the tab "Custom" is in front.
    bool customTab() const { return m_customTab; }

    /// The scan's progress on this form: lblScanning, lblScannerShow, pctCurrentProg.
    ScanProgress& scanProgress() const { return *m_scanView; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildStandardTab(QWidget* page);
    /// The bot's own boxes: name, skill, team and ping.
    QGridLayout* buildBotBoxes();
    void buildScanProgress();
    /// OK, Cancel and Scan.
    QHBoxLayout* buildButtons();
    void buildCustomTab(QWidget* page);
    void LoadBotList();
    void fillInstalled(const QList<QStringList>& rows);
    void chkBOT_Click(int index);
    void tabBOTs_Click(int index);
    void grdBOTs_Click(const QString& firstCell);
    void ok();

    AppContext& m_app;
    ServerProfile& m_mainProfile;
    bool m_customTab = false;
    QTabWidget* m_tabs = nullptr;
    QList<QRadioButton*> m_models;
    QTableWidget* m_installed = nullptr;
    QLabel* m_selectedCaption = nullptr;
    QLabel* m_selected = nullptr;
    QLineEdit* m_name = nullptr;
    QComboBox* m_skill = nullptr;
    QComboBox* m_team = nullptr;
    QLineEdit* m_ping = nullptr;
    QLabel* m_scanning = nullptr;
    QLabel* m_activity = nullptr;
    QProgressBar* m_progress = nullptr;
    std::unique_ptr<ScanProgress> m_scanView;
};

/// Add on the roster: shows the picker of the main window without making it modal,
/// loading it first when it isn't loaded.
frmBOT* showBotPicker(AppContext& app, frmMain& window);

} // namespace steward
