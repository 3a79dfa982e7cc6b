#include "platform/foreign_window.h"

#ifdef CW_HAVE_XCB
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#endif

namespace cw {

#ifndef CW_HAVE_XCB
bool ForeignWindowExists(WId) { return true; }
#else
bool ForeignWindowExists(WId window) {
  const auto* x11 = qGuiApp != nullptr ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  xcb_connection_t* connection = x11 != nullptr ? x11->connection() : nullptr;
  if (connection == nullptr) return true;
  xcb_generic_error_t* error = nullptr;
  xcb_get_window_attributes_reply_t* reply = xcb_get_window_attributes_reply(
      connection, xcb_get_window_attributes(connection, static_cast<xcb_window_t>(window)), &error);
  const bool gone = error != nullptr && error->error_code == XCB_WINDOW;
  std::free(reply);
  std::free(error);
  return !gone;
}
#endif

}  // namespace cw
