// The plug-in's HTTP calls. Each blocks its caller until the transfer ends or 120 seconds have passed; safe on any
// thread and side by side.
//
// Result: true when an answer with a status below 400 arrived. `response` receives the body of every answer, byte for
// byte, and is untouched otherwise. `error` is set on failure, to a text that begins with "ERROR:", and never cleared.
// Texts are UTF-8 and go out as they stand; a URL that the platform cannot parse fails before anything is sent.
#pragma once

#include <cstddef>
#include <string>

namespace Network {

/// The most bytes that an answer may have once it is decoded. On Linux a larger one is an error; macOS has no limit.
inline constexpr std::size_t kShortAnswer = std::size_t{1} << 20;
inline constexpr std::size_t kLongAnswer = std::size_t{512} << 20;

/// Posts JSON text. The body is handed on; move a large one in.
bool Post(const std::string& url, std::string body, std::string& response, std::string& error,
          std::size_t answerLimit = kLongAnswer);

bool Get(const std::string& url, std::string& response, std::string& error, std::size_t answerLimit = kLongAnswer);

/// Posts the bytes of the regular file at `filePath`.
bool PostFile(const std::string& url, const std::string& filePath, std::string& response, std::string& error);

/// Posts a form with the fields "licenseKey" and "filename" and the file at `filePath` as "file". `filename` is not
/// escaped.
bool PostMultipart(const std::string& url, const std::string& accountKey, const std::string& filename,
                   const std::string& filePath, std::string& response, std::string& error);

}  // namespace Network
