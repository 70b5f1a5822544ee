#pragma once
// The run-time error state: a number, a source and a description. Routines throw a
// RuntimeError where the program's error road starts, and the routine that owns the
// road reports it (see ErrorReporter.h) and goes on at its exit.
#include <QString>
#include <exception>
#include <string>

namespace steward {

namespace err {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileName = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int InputPastEnd = 62;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ControlArrayElement = 340;
inline constexpr int AddressInUse = 10048;
inline constexpr int IndexOutOfBounds = 35600;
} // namespace err

class RuntimeError : public std::exception {
public:
    explicit RuntimeError(int number, QString description = {}, QString source = {});

    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const QString& source() const { return m_source; }

    const char* what() const noexcept override { return m_what.c_str(); }

private:
    int m_number;
    QString m_description;
    QString m_source;
    std::string m_what;
};

/// Throws a RuntimeError; an empty description takes the standard one for the number.
[[noreturn]] void raiseError(int number, const QString& description = {}, const QString& source = {});

} // namespace steward
