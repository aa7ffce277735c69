#include "console/EventStream.h"

#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>

namespace service {
namespace {

namespace asio = boost::asio;

constexpr char kHead[] =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-store\r\n"
    "X-Content-Type-Options: nosniff\r\nConnection: close\r\n\r\n";

constexpr int kUnreadBytes = 16 << 10;  // that the system buffers for a page that does not read

constexpr const char* kNames[] = {"commands", "records", "designs", "clips", "status"};  // as in Topic

std::string Event(const std::string& name, const std::string& data) {
  return "event: " + name + "\ndata: " + data + "\n\n";
}

unsigned Bit(std::size_t topic) { return 1u << topic; }

}  // namespace

EventStream::EventStream(asio::ip::tcp::socket socket, Context& context)
    : stream_(std::move(socket)), silence_(stream_.get_executor()), context_(context) {}

void EventStream::Start() {
  Error error;
  stream_.socket().set_option(asio::socket_base::send_buffer_size(kUnreadBytes), error);
  if (error || !context_.events.Join(shared_from_this())) return Close();
  Await();
  Write(kHead + Event("hello", Json{{"version", ServiceVersion()}}.dump()));
  AwaitSilence();
}

void EventStream::Report(Topic topic) {
  const unsigned bit = Bit(static_cast<std::size_t>(topic));
  if ((changes_.fetch_or(bit) & bit) != 0) return;  // about to be written already
  asio::post(stream_.get_executor(), [self = shared_from_this()] { self->WriteChanges(); });
}

void EventStream::End() {
  asio::post(stream_.get_executor(), [self = shared_from_this()] { self->Close(); });
}

// A page sends nothing more, so reading only detects its end.
void EventStream::Await() {
  stream_.expires_never();
  stream_.async_read_some(asio::buffer(ignored_), [self = shared_from_this()](Error error, std::size_t) {
    if (error) return self->Close();
    self->Await();
  });
}

// Writing detects a page that is gone without having closed the connection.
void EventStream::AwaitSilence() {
  silence_.expires_after(context_.times.comment);
  silence_.async_wait([self = shared_from_this()](Error error) {
    if (error || !self->stream_.socket().is_open()) return;
    if (!self->isWriting_) self->Write(":\n\n");
    self->AwaitSilence();
  });
}

void EventStream::WriteChanges() {
  if (isWriting_) return;
  std::string text;
  const unsigned changes = changes_.exchange(0);
  for (std::size_t topic = 0; topic < std::size(kNames); ++topic) {
    if ((changes & Bit(topic)) != 0) text += Event(kNames[topic], "{}");
  }
  if (!text.empty()) Write(std::move(text));
}

void EventStream::Write(std::string text) {
  isWriting_ = true;
  text_ = std::move(text);
  stream_.expires_after(context_.times.silence);
  asio::async_write(stream_, asio::buffer(text_), [self = shared_from_this()](Error error, std::size_t) {
    self->isWriting_ = false;
    if (error) return self->Close();
    self->WriteChanges();
  });
}

void EventStream::Close() {
  silence_.cancel();
  stream_.close();
}

}  // namespace service
