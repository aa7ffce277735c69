// The FileMaker error numbers that formulas, scripts and plug-ins can return here.
#pragma once

namespace calc::errors {

inline constexpr int kCancelled = 1;  // by the user
inline constexpr int kNoPrivilege = 9;
inline constexpr int kDataMissing = 10;
inline constexpr int kDivisionByZero = 15;
inline constexpr int kFileMissing = 100;
inline constexpr int kFieldMissing = 102;
inline constexpr int kCannotCreateFile = 800;
inline constexpr int kNotAuthorised = 825;  // the account lacks the extended privilege fmplugin
inline constexpr int kGeneral = 1200;
inline constexpr int kTooFewArguments = 1201;
inline constexpr int kTooManyArguments = 1202;
inline constexpr int kOperandExpected = 1204;
inline constexpr int kOpenComment = 1205;
inline constexpr int kOpenText = 1206;
inline constexpr int kUnbalancedParenthesis = 1207;
inline constexpr int kNotAFunction = 1208;
inline constexpr int kNameMissing = 1209;
inline constexpr int kAlreadyRegistered = 1210;
inline constexpr int kListNotAllowed = 1211;
inline constexpr int kOperatorExpected = 1212;
inline constexpr int kFieldRequired = 1214;
inline constexpr int kInvalidGetParameter = 1215;
inline constexpr int kNoSuchFunction = 1224;
inline constexpr int kNotSupported = 1225;
inline constexpr int kNoScriptToStart = 1825;  // requested by a plug-in
inline constexpr int kSqlSyntax = 8310;

// FileMaker has no numbers for these.
inline constexpr int kBadArgument = kGeneral;
inline constexpr int kOutOfRange = kGeneral;
inline constexpr int kTooDeep = kGeneral;
inline constexpr int kTooManyRounds = kGeneral;

}  // namespace calc::errors
