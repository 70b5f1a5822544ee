#pragma once
// The whole set of server settings, addressed by field name and index. The main
// window is a view of it; the writers, the store and the option rules read and write
// these fields at the moment they run.
#include "shell/Field.h"

#include <QHash>
#include <QObject>
#include <memory>
#include <vector>

namespace steward {

class ServerProfile : public QObject {
    Q_OBJECT
public:
    /// A profile with every field of the window at its design default.
    explicit ServerProfile(QObject* parent = nullptr);
    ~ServerProfile() override;

    /// The field by name and index (-1 for a field outside an array). An unknown field
    /// is run-time error 340.
    Field& field(const QString& name, int index = -1) const;
    Field* find(const QString& name, int index = -1) const;
    bool has(const QString& name, int index = -1) const { return find(name, index) != nullptr; }

    QString text(const QString& name, int index = -1) const { return field(name, index).text(); }
    void setText(const QString& name, int index, const QString& text) { field(name, index).setText(text); }
    void setText(const QString& name, const QString& text) { field(name).setText(text); }
    int value(const QString& name, int index = -1) const { return field(name, index).value(); }
    bool isSet(const QString& name, int index = -1) const { return field(name, index).isSet(); }
    void setValue(const QString& name, int index, int value) { field(name, index).setValue(value); }
    void setValue(const QString& name, int value) { field(name).setValue(value); }
    QString tag(const QString& name, int index = -1) const { return field(name, index).tag(); }

    /// The lowest and highest index of an array.
    int lbound(const QString& name) const;
    int ubound(const QString& name) const;

    /// All fields in the order of the tables.
    const std::vector<Field*>& fields() const { return m_order; }
    /// The members of an array in index order.
    std::vector<Field*> array(const QString& name) const;

    /// Every field back to its design default.
    void resetAll();

    // Window properties that the logic reads and writes.
    QString startingMap() const { return text(QStringLiteral("StartingMap")); }
    void setStartingMap(const QString& map) { setText(QStringLiteral("StartingMap"), map); }
    bool configurationChanged() const { return isSet(QStringLiteral("ConfigurationChanged")); }
    void setConfigurationChanged(bool changed) { setValue(QStringLiteral("ConfigurationChanged"), changed ? 1 : 0); }
    /// The main window's own mouse pointer (pointer::Hourglass while a writer runs).
    int formPointer() const { return value(QStringLiteral("MousePointer")); }
    void setFormPointer(int pointer) { setValue(QStringLiteral("MousePointer"), pointer); }

signals:
    /// Any field changed.
    void fieldChanged(steward::Field* field);

private:
    void add(const FieldDefinition& definition);
    void onOptionChanged(Field* field);

    std::vector<std::unique_ptr<Field>> m_fields;
    std::vector<Field*> m_order;
    QHash<QString, Field*> m_byKey;
    QHash<QString, QPair<int, int>> m_bounds;
    QHash<QString, std::vector<Field*>> m_groups;
};

/// The tables of every field, in window order.
const std::vector<FieldDefinition>& profileFieldTable();

} // namespace steward
