#pragma once
// The prompts of the program without a window: it never asks. A box's text goes to
// standard error (without the blanks that widen a box), a question takes its default
// answer, and a file dialog is cancelled. A warning or critical box is a refusal.
#include "platform/Prompts.h"

#include <QStringList>

class QTextStream;

namespace steward {

class CtlPrompts final : public Prompts {
public:
    explicit CtlPrompts(QTextStream& err) : m_err(err) {}

    Answer messageBox(const MessageBoxRequest& request) override;
    bool fileDialog(FileDialogState& state, bool open) override;
    int screenPointer() const override { return m_pointer; }
    void setScreenPointer(int value) override { m_pointer = value; }
    void processEvents() override {}

    /// Whether a warning or critical box came since the last reset, and its text.
    bool refused() const { return !m_refusal.isEmpty(); }
    const QString& refusal() const { return m_refusal; }
    void reset() { m_refusal.clear(); }

    /// A box's text as a line of output: the widening blanks go, line ends become "\n".
    static QString plainText(const QString& text);

private:
    QTextStream& m_err;
    QString m_refusal;
    int m_pointer = 0;
};

} // namespace steward
