#pragma once
// frmScanner, the small window that shows the progress of a map scan: "Map Scanner",
// a fixed label "Current Progress:", the activity text and a progress bar. The scan
// blocks the event loop, so the window paints by hand, at most once a frame and once
// more at the end of each phase.
#include "maps/ScanProgress.h"
#include "ui/FramePacer.h"
#include "ui/QtPrompts.h"

#include <QDialog>
#include <QPointer>
#include <memory>

class QLabel;
class QProgressBar;

namespace steward {

class frmScanner : public QDialog {
    Q_OBJECT
public:
    explicit frmScanner(QWidget* parent = nullptr);

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
/// on unload. Set it as AppContext::scanProgress. Its widgets always hold the newest
/// text and value; they are painted when a frame has passed since the last paint, and
/// when a phase ends.
class frmScannerProgress final : public ScanProgress {
public:
    explicit frmScannerProgress(QWidget* owner = nullptr, FramePacer::Clock clock = {})
        : m_owner(owner), m_pacer(std::move(clock))
    {}
    ~frmScannerProgress() override;
    frmScannerProgress(const frmScannerProgress&) = delete;
    frmScannerProgress& operator=(const frmScannerProgress&) = delete;

    /// The window that owns frmScanner (frmMain once it exists).
    void setOwner(QWidget* owner) { m_owner = owner; }
    /// frmScanner while it is loaded, else nullptr.
    frmScanner* window() const { return m_window.data(); }

    void show() override;
    void hide() override;
    void unload() override;
    void setActivity(const QString& text) override;
    void setActivityVisible(bool visible) override;
    void setMaximum(int maximum) override;
    void setValue(int value) override;
    void setBusy(bool busy) override;
    void phaseDone() override;

private:
    frmScanner& load();
    /// Changes the bar without the repaint that QProgressBar makes at once.
    template <typename Change>
    void changeBar(Change change);
    void paintWhenDue();
    /// Paints the activity text and the bar now, in one trip to the display.
    void paint();

    QPointer<QWidget> m_owner;
    QPointer<frmScanner> m_window;
    FramePacer m_pacer;
    /// The scan's boxes open above the window while it is loaded.
    std::unique_ptr<AskingWindow> m_asking;
};

} // namespace steward
