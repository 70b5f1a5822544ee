#pragma once
#include <QDateTime>
#include <QString>

namespace steward {

/// The clock and the system's date and time formats.
class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
    /// The date in the system's long date format.
    virtual QString longDate(const QDate& date) const = 0;
    /// The time in the system's time format.
    virtual QString timeText(const QTime& time) const = 0;
};

class SystemClock final : public Clock {
public:
    QDateTime now() const override;
    QString longDate(const QDate& date) const override;
    QString timeText(const QTime& time) const override;
};

} // namespace steward
