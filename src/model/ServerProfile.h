#pragma once
// The whole set of server settings, addressed by field name and index. The main
// window is a view of it; the writers, the store and the option rules read and write
// these fields at the moment they run.
#include "model/Field.h"
#include "model/FieldNames.h"

#include <QHash>
#include <QObject>
#include <memory>
#include <functional>
#include <vector>

namespace steward {

class ServerProfile : public QObject {
    Q_OBJECT
public:
    /// A profile with every field of the window at its design default.
    explicit ServerProfile(QObject* parent = nullptr);
    ~ServerProfile() override;

    /// The field by its typed name. An unknown field is run-time error 340.
    Field& field(FieldId id) const { return fieldNamed(id.nameText(), id.index); }
    QString text(FieldId id) const { return field(id).text(); }
    void setText(FieldId id, const QString& text) { field(id).setText(text); }
    int value(FieldId id) const { return field(id).value(); }
    bool isSet(FieldId id) const { return field(id).isSet(); }
    void setValue(FieldId id, int value) { field(id).setValue(value); }
    QString tag(FieldId id) const { return field(id).tag(); }

    /// The lowest and highest index of an array, and its members in index order.
    int lbound(FieldArray array) const { return bounds(array.nameText()).first; }
    int ubound(FieldArray array) const { return bounds(array.nameText()).second; }
    std::vector<Field*> array(FieldArray array) const;

    /// The field of a window control's name ("txtServerConfig(12)" is name
    /// "txtServerConfig" and index 12); none for a name outside the tables. Only the
    /// windows' binding looks fields up by text.
    Field* findByName(const QString& name, int index = -1) const;

    /// All fields in the order of the tables.
    const std::vector<Field*>& fields() const { return m_order; }
    /// The members of an array in index order.
    std::vector<Field*> array(const QString& name) const;

    /// Every field back to its design default.
    void resetAll();

    /// The click routine of a check box. Setting the box from code runs it, as the
    /// user's click does (setCheckFromCode); the commands register them.
    void onClick(FieldId box, std::function<void()> routine) { m_clicks.insert(box.key(), std::move(routine)); }
    /// Runs the click routine of a box, if one is registered.
    void click(FieldId box) const;

    // Window properties that the logic reads and writes.
    QString startingMap() const { return text(F::StartingMap); }
    void setStartingMap(const QString& map) { setText(F::StartingMap, map); }
    bool configurationChanged() const { return isSet(F::ConfigurationChanged); }
    void setConfigurationChanged(bool changed) { setValue(F::ConfigurationChanged, changed ? 1 : 0); }
    /// True while the main window's load runs.
    bool isLoading() const { return m_loading; }
    void setLoading(bool loading) { m_loading = loading; }
    /// The main window's own mouse pointer (pointer::Hourglass while a writer runs).
    int formPointer() const { return value(F::MousePointer); }
    void setFormPointer(int pointer) { setValue(F::MousePointer, pointer); }

signals:
    /// Any field changed.
    void fieldChanged(steward::Field* field);

private:
    Field& fieldNamed(const QString& name, int index) const;
    QPair<int, int> bounds(const QString& name) const;
    void add(const FieldDefinition& definition);
    void onOptionChanged(Field* field);

    std::vector<std::unique_ptr<Field>> m_fields;
    std::vector<Field*> m_order;
    QHash<QString, Field*> m_byKey;
    QHash<QString, QPair<int, int>> m_bounds;
    QHash<QString, std::vector<Field*>> m_groups;
    QHash<QString, std::function<void()>> m_clicks;
    bool m_loading = false;
};

/// Sets a check box from code: when its value changes, its click routine runs.
void setCheckFromCode(ServerProfile& profile, FieldId box, int value);

/// The tables of every field, in window order.
const std::vector<FieldDefinition>& profileFieldTable();

} // namespace steward
