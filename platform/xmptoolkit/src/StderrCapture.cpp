#include "StderrCapture.hpp"

#include <iostream>
#include <streambuf>

namespace xmptoolkit_detail {
namespace {

thread_local std::string* t_captureTarget = nullptr;

// Unbuffered, so every character decides on its own thread where it goes and
// the forwarder keeps no state that threads could share.
class StderrRouter final : public std::streambuf {
public:
    explicit StderrRouter(std::streambuf* original) : m_original(original) {}

protected:
    int_type overflow(int_type ch) override {
        if (traits_type::eq_int_type(ch, traits_type::eof())) {
            return traits_type::not_eof(ch);
        }
        if (t_captureTarget != nullptr) {
            t_captureTarget->push_back(traits_type::to_char_type(ch));
            return ch;
        }
        return m_original != nullptr ? m_original->sputc(traits_type::to_char_type(ch)) : ch;
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override {
        if (t_captureTarget != nullptr) {
            t_captureTarget->append(text, static_cast<std::size_t>(count));
            return count;
        }
        return m_original != nullptr ? m_original->sputn(text, count) : count;
    }

    int sync() override { return (t_captureTarget != nullptr || m_original == nullptr) ? 0 : m_original->pubsync(); }

private:
    std::streambuf* m_original;
};

}  // namespace

void InstallStderrRouter() {
    // Never destroyed: std::cerr may be flushed after static destructors ran.
    static StderrRouter* const router = new StderrRouter(std::cerr.rdbuf());
    std::cerr.rdbuf(router);
}

StderrCapture::StderrCapture(std::string* target) : m_previous(t_captureTarget) {
    t_captureTarget = target;
}

StderrCapture::~StderrCapture() {
    t_captureTarget = m_previous;
}

}  // namespace xmptoolkit_detail
