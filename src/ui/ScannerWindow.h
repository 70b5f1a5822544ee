#pragma once
// frmScanner, the small window that shows the progress of a map scan: "Map Scanner",
// a fixed label "Current Progress:", the activity text and a progress bar. The scan
// blocks the event loop, so every change is painted at once.
#include "maps/ScanProgress.h"
#include "ui/QtPrompts.h"

#include <QDialog>
#include <QPointer>
#include <memory>

class QLabel;
class QProgressBar;

namespace steward {

class ScannerWindow : public QDialog {
    Q_OBJECT
public:
    explicit ScannerWindow(QWidget* parent = nullptr);

    QLabel* scanningLabel() const { return m_scanning; }
    QLabel* activityLabel() const { return m_activity; }
    QProgressBar* progressBar() const { return m_progress; }

protected:
    /// The window is closed by the scan that opened it, never by its close button.
    void closeEvent(QCloseEvent* event) override;

private:
    QLabel* m_scanning;
    QLabel* m_activity;
    QProgressBar* m_progress;
};

/// The scan's progress on the real window: the window is loaded on show and deleted
/// on unload. Set it as AppContext::scanProgress.
class ScannerWindowProgress final : public ScanProgress {
public:
    explicit ScannerWindowProgress(QWidget* owner = nullptr) : m_owner(owner) {}
    ~ScannerWindowProgress() override;
    ScannerWindowProgress(const ScannerWindowProgress&) = delete;
    ScannerWindowProgress& operator=(const ScannerWindowProgress&) = delete;

    /// The window that owns frmScanner (frmMain once it exists).
    void setOwner(QWidget* owner) { m_owner = owner; }
    /// frmScanner while it is loaded, else nullptr.
    ScannerWindow* window() const { return m_window.data(); }

    void show() override;
    void hide() override;
    void unload() override;
    void setActivity(const QString& text) override;
    void setActivityVisible(bool visible) override;
    void setMaximum(int maximum) override;
    void setValue(int value) override;
    void setBusy(bool busy) override;

private:
    ScannerWindow& load();

    QPointer<QWidget> m_owner;
    QPointer<ScannerWindow> m_window;
    /// The scan's boxes open above the window while it is loaded.
    std::unique_ptr<AskingWindow> m_asking;
};

} // namespace steward
