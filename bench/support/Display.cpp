#include "Display.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <poll.h>
#include <stdexcept>
#include <time.h>
#include <xcb/xtest.h>

namespace {

constexpr double patience = 60;
constexpr timespec glance{0, 100'000};
/// The key "a" of the keyboard that a display without a keyboard has.
constexpr std::uint8_t keyCode = 38;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

Display::Display(int width, int height)
    : m_server(std::make_unique<Process>(
          std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                   std::to_string(width) + "x" + std::to_string(height) + "x24",
                                   "-nolisten", "tcp", "-noreset"})) {
    const std::string number = m_server->readLine();
    m_name = ":" + number;
    m_connection.reset(xcb_connect(m_name.c_str(), nullptr));
    if (number.empty() || xcb_connection_has_error(m_connection.get()) != 0)
        throw std::runtime_error("no display");
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.get(), m_root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection.get());
}

std::uint32_t Display::pixel(int x, int y) const {
    const auto cookie =
        xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_root,
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
    const Owned<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(m_connection.get(), cookie, nullptr), std::free);
    if (!reply)
        throw std::runtime_error("nothing to be seen");
    std::uint32_t color = 0;
    for (int i = 2; i >= 0; --i)
        color = color << 8U | xcb_get_image_data(reply.get())[i];
    return color;
}

void Display::forgetWindows() const {
    while (
        const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get()), std::free}) {
    }
}

void Display::waitForWindow() const {
    const double end = now() + patience;
    while (now() < end) {
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get()),
                                                      std::free}) {
            if ((event->response_type & 0x7FU) == XCB_MAP_NOTIFY)
                return;
        }
        if (xcb_connection_has_error(m_connection.get()) != 0)
            throw std::runtime_error("the display has gone");
        pollfd socket{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
        poll(&socket, 1, static_cast<int>(std::ceil(std::max(end - now(), 0.0) * 1e3)));
    }
}

double Display::waitForChange(int x, int y, std::uint32_t color) const {
    const double end = now() + patience;
    while (now() < end) {
        if (pixel(x, y) != color)
            return now();
        nanosleep(&glance, nullptr);
    }
    return std::numeric_limits<double>::infinity();
}

void Display::focus(std::uint32_t window) const {
    xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

double Display::pressKey() const {
    const double time = now();
    for (const std::uint8_t type : {std::uint8_t{XCB_KEY_PRESS}, std::uint8_t{XCB_KEY_RELEASE}})
        xcb_test_fake_input(m_connection.get(), type, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection.get());
    return time;
}
