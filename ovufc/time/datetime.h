#pragma once

#include <cstdint>
#include <string>

#include "ovufc/time/time_zone_offset.h"

/// Points in time and their texts.
///
/// Values are plain and for one thread at a time. Reading throws ov::exception with a message that names the
/// dialect and leaves the value as it was; besides texts of another shape that is so for dates that do not
/// exist (31 February, hour 25) and for times before 1601. Writing never fails: what cannot be written is an
/// empty text.
namespace ov::time {

/// A point in time with texts in the ISO-8601 dialect.
class datetime {
  public:
    explicit datetime(std::uint64_t file_time = 0) noexcept : value(file_time) {}
    datetime(const datetime&) = default;
    datetime& operator=(const datetime&) = default;
    virtual ~datetime() = default;

    /// Takes "2021-03-04T05:06:07", with a blank in place of the T, with up to three digits after a ".", and
    /// with "Z" or an offset ("+02:00") at the end. Without either it is local time by the rules now in
    /// force. The digits after the "." are milliseconds as they stand: ".5" is 5 ms, on purpose.
    virtual void parse(const std::wstring& text);

    /// "2021-03-04T05:06:07Z", or local time with the zone's offset. The offset is that of this moment, not
    /// the one in force at the date written: kept on purpose.
    [[nodiscard]] virtual std::wstring format(bool local, bool withMilliseconds = false) const;

    /// Date and time for people, in the user's locale. Local time is made with the rules of the date shown.
    [[nodiscard]] virtual std::wstring display(bool local, bool longDate) const = 0;
    /// The same, the date alone.
    [[nodiscard]] virtual std::wstring displayDate(bool local, bool longDate) const = 0;

    /// A file time: ticks of 100 nanoseconds since 1601, UTC. 0 means no time; all its texts are empty.
    std::uint64_t value;
};

/// A point in time with texts in the RFC-1123 dialect.
class datetime_rfc1123 : public datetime {
  public:
    using datetime::datetime;

    /// Takes "Thu, 04 Mar 2021 05:06:07 GMT" and "3/4/2021 5:06:07 PM" (month first). With GMT the time is
    /// UTC, otherwise local time by the rules now in force. The day name must be there and have three
    /// letters, but need not be the right one. "12:30:00 AM" is half past twelve, on purpose.
    void parse(const std::wstring& text) override;

    /// "Thu, 04 Mar 2021 05:06:07 GMT", or local time with AM or PM, where the hour after midnight is "00".
    /// This dialect has no milliseconds.
    [[nodiscard]] std::wstring format(bool local, bool withMilliseconds = false) const override;

    [[nodiscard]] std::wstring display(bool local, bool longDate) const override;
    [[nodiscard]] std::wstring displayDate(bool local, bool longDate) const override;
};

}  // namespace ov::time
