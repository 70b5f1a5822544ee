#pragma once
// The keyboard rules on real text boxes: the key-down filter, the character filter,
// the selection of the whole text on focus or after a change, and the change mark
// that every key press of the main window sets.
//
// Boxes are found by their object name under a root widget: "txtSpeed(2)" (or
// "txtSpeed_2") for an array member, "txtKnockBack" for a single box. Install once
// the window's widgets exist:
//
//     auto* keys = new KeyFilters(app.services.beeper, window);
//     keys->install(window, &profile); // the profile gets its change mark set
#include "model/KeyRules.h"

#include <QHash>
#include <QObject>
#include <QPointer>

class QKeyEvent;
class QWidget;

namespace steward {

class Beeper;
class ServerProfile;

class KeyFilters : public QObject {
    Q_OBJECT
public:
    explicit KeyFilters(Beeper* beeper, QObject* parent = nullptr);

    /// Applies the rules to every box under root (root included) whose name has rules.
    /// With a profile, a key press that gives a character in any widget under root
    /// sets the profile's change mark, also when a filter refuses it. Widgets made
    /// later are not covered; attach() them.
    void install(QWidget* root, ServerProfile* changeMark = nullptr);

    /// Applies these rules to one box.
    void attach(QWidget* box, const TextBoxKeyRules& rules);

    /// The field name in an object name: "txtSpeed(2)" and "txtSpeed_2" give "txtSpeed".
    static QString fieldName(const QString& objectName);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool filterKey(QObject* watched, QKeyEvent* event);
    void beep();

    Beeper* m_beeper;
    QPointer<ServerProfile> m_changeMark;
    QHash<QObject*, TextBoxKeyRules> m_rules;
};

} // namespace steward
