#include "view/X11Selection.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <xcb/xcb.h>

namespace quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 5s;
constexpr uint32_t everything = 0x1FFFFFFF; ///< of a property, in units of 4 bytes

template<class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template<class T>
Reply<T> owned(T* reply)
{
    return {reply, &std::free};
}

/// One text, asked for and received at a window that nobody sees.
class Request
{
public:
    Request() : m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect) {}

    std::optional<QByteArray> text(const char* selection)
    {
        if (xcb_connection_has_error(m_connection.get()) != 0)
            return {};
        const xcb_atom_t utf8 = atom("UTF8_STRING");
        m_property = atom("QUILLORY_SELECTION");
        makeWindow();
        xcb_convert_selection(m_connection.get(), m_window, atom(selection), utf8, m_property,
                              XCB_CURRENT_TIME);
        const auto answer = next<xcb_selection_notify_event_t>(XCB_SELECTION_NOTIFY,
                                                               [](const auto&) { return true; });
        if (!answer || answer->property == XCB_NONE)
            return {};
        const xcb_atom_t piecewise = atom("INCR");
        const Reply<xcb_get_property_reply_t> whole = takeProperty();
        if (!whole)
            return {};
        if (whole->type == piecewise)
            return pieces();
        return whole->type == utf8 ? std::optional(bytes(*whole)) : std::nullopt;
    }

private:
    xcb_atom_t atom(const char* name) const
    {
        xcb_connection_t* const connection = m_connection.get();
        const auto cookie =
            xcb_intern_atom(connection, 0, uint16_t(std::char_traits<char>::length(name)), name);
        const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_NONE);
    }

    void makeWindow()
    {
        xcb_connection_t* const connection = m_connection.get();
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        m_window = xcb_generate_id(connection);
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
    }

    /// The next event of a \a type that \a isWanted; null when none comes in time.
    template<class Event, class Test>
    Reply<Event> next(uint8_t type, Test isWanted) const
    {
        xcb_connection_t* const connection = m_connection.get();
        xcb_flush(connection);
        QDeadlineTimer deadline(patience);
        for (;;) {
            while (auto event = owned(xcb_poll_for_event(connection))) {
                auto* const found = reinterpret_cast<Event*>(event.get());
                if ((event->response_type & 0x7F) != type || !isWanted(*found))
                    continue;
                (void)event.release(); // it is the one that is answered
                return owned(found);
            }
            pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
            if (xcb_connection_has_error(connection) != 0 || deadline.hasExpired() ||
                ::poll(&descriptor, 1, int(deadline.remainingTime())) == 0)
                return owned<Event>(nullptr);
        }
    }

    /// What the owner has put down; taking it away asks for more.
    Reply<xcb_get_property_reply_t> takeProperty() const
    {
        const auto cookie = xcb_get_property(m_connection.get(), 1, m_window, m_property,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, everything);
        return owned(xcb_get_property_reply(m_connection.get(), cookie, nullptr));
    }

    static QByteArray bytes(const xcb_get_property_reply_t& reply)
    {
        return {static_cast<const char*>(xcb_get_property_value(&reply)),
                xcb_get_property_value_length(&reply)};
    }

    /// A long text comes in pieces, the last of which is empty.
    std::optional<QByteArray> pieces() const
    {
        QByteArray all;
        for (;;) {
            const auto put = next<xcb_property_notify_event_t>(
                XCB_PROPERTY_NOTIFY, [this](const xcb_property_notify_event_t& event) {
                    return event.atom == m_property && event.state == XCB_PROPERTY_NEW_VALUE;
                });
            const auto piece = put ? takeProperty() : owned<xcb_get_property_reply_t>(nullptr);
            if (!piece)
                return {};
            if (xcb_get_property_value_length(piece.get()) == 0)
                return all;
            all += bytes(*piece);
        }
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_property = XCB_NONE;
};

} // namespace

bool X11Selection::isAvailable()
{
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

std::optional<QByteArray> X11Selection::utf8Text(QClipboard::Mode mode)
{
    return Request().text(mode == QClipboard::Selection ? "PRIMARY" : "CLIPBOARD");
}

} // namespace quillory
