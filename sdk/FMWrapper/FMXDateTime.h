// Dates, times and timestamps.
#pragma once

#include <FMWrapper/FMXClient.h>
#include <FMWrapper/FMXExtern.h>

namespace fmx {

class DateTime;
class FixPt;
class Locale;
class Text;

extern "C" {
DateTime* FM_DateTime_Constructor1(_fmxcpt& x);
DateTime* FM_DateTime_Constructor2(const unichar16* units, uint32 length, const Locale& locale, _fmxcpt& x);
DateTime* FM_DateTime_Constructor3(const Text& text, const Locale& locale, _fmxcpt& x);
void FM_DateTime_Delete(void* self, _fmxcpt& x);
bool FM_DateTime_operatorEQ(const void* self, const DateTime& other, _fmxcpt& x);
bool FM_DateTime_operatorNE(const void* self, const DateTime& other, _fmxcpt& x);
void FM_DateTime_Now(void* self, _fmxcpt& x);
void FM_DateTime_SetDate(void* self, const DateTime& other, _fmxcpt& x);
void FM_DateTime_SetTime(void* self, const DateTime& other, _fmxcpt& x);
errcode FM_DateTime_SetNormalizedDate1(void* self, int16 month, int16 day, int16 year, _fmxcpt& x);
errcode FM_DateTime_SetNormalizedDate2(void* self, const FixPt& month, const FixPt& day, const FixPt& year, _fmxcpt& x);
errcode FM_DateTime_SetNormalizedTime1(void* self, int64 hours, int16 minutes, int16 seconds, int32 microseconds,
                                       _fmxcpt& x);
errcode FM_DateTime_SetNormalizedTime2(void* self, const FixPt& hours, const FixPt& minutes, const FixPt& seconds,
                                       _fmxcpt& x);
void FM_DateTime_SetDaysSinceEpoch(void* self, int64 days, _fmxcpt& x);
void FM_DateTime_SetSecondsSinceEpoch(void* self, const FixPt& seconds, _fmxcpt& x);
void FM_DateTime_SetSecsSinceMidnight(void* self, const FixPt& seconds, _fmxcpt& x);
bool FM_DateTime_IsLeapYear(const void* self, _fmxcpt& x);
int16 FM_DateTime_GetYear(const void* self, _fmxcpt& x);
int16 FM_DateTime_GetMonth(const void* self, _fmxcpt& x);
int16 FM_DateTime_GetDay(const void* self, _fmxcpt& x);
int16 FM_DateTime_DayOfYear(const void* self, _fmxcpt& x);
int16 FM_DateTime_DayOfWeek(const void* self, _fmxcpt& x);
int16 FM_DateTime_WeekOfYear(const void* self, _fmxcpt& x);
int32 FM_DateTime_GetHour(const void* self, _fmxcpt& x);
int16 FM_DateTime_GetMinute(const void* self, _fmxcpt& x);
int16 FM_DateTime_GetSec(const void* self, _fmxcpt& x);
int32 FM_DateTime_GetUSec(const void* self, _fmxcpt& x);
int32 FM_DateTime_GetDaysSinceEpoch(const void* self, _fmxcpt& x);
void FM_DateTime_GetSeconds(const void* self, FixPt& result, _fmxcpt& x);
void FM_DateTime_GetSecondsSinceEpoch(const void* self, FixPt& result, _fmxcpt& x);
void FM_DateTime_GetSecsSinceMidnight(const void* self, FixPt& result, _fmxcpt& x);
}

/// A date and a time of day. Day 1 is 1 January of year 1.
class DateTime {
 public:
  void operator delete(void* self) {
    _fmxcpt x;
    FM_DateTime_Delete(self, x);
  }

 private:
  DateTime();
  DateTime(const DateTime&);
};

}  // namespace fmx
