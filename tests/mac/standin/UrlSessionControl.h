// A test's hold on the stand-in of the URL session, beside FakeUrlLayer, which says what transfers bring.
#pragma once

namespace UrlSessionControl {

enum class Mood {
  kWilling,
  kMakesNoTask,
  kRaises,           ///< when asked for a task
  kForgets,          ///< lets go of the handler without a call
  kIsNotHttp,        ///< answers with a response of another protocol
  kDescribesNothing  ///< errors have no description
};

inline Mood mood = Mood::kWilling;

// Of the last request.
inline double timeoutInterval = 0;
inline unsigned long cachePolicy = 0;

}  // namespace UrlSessionControl
