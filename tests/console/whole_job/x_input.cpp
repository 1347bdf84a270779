#include "tests/console/whole_job/x_input.h"

// The macros of these headers agree with nobody, so they are included here and nowhere else.
#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <poll.h>

#include <stdexcept>

namespace orvane::console {

struct XInput::Connection {
  ::Display* display = nullptr;
  int iKeyboardEvent = 0;  ///< what events of the keyboard extension are known by
};

XInput::XInput(const std::string& sDisplay) : m_connection(std::make_unique<Connection>()) {
  // A window that is asked about may just have gone.
  XSetErrorHandler([](::Display*, XErrorEvent*) { return 0; });
  m_connection->display = XOpenDisplay(sDisplay.c_str());
  if (!m_connection->display) throw std::runtime_error("There is no display " + sDisplay + ".");
}

XInput::~XInput() {
  XCloseDisplay(m_connection->display);
}

void XInput::MoveTo(int iX, int iY) {
  XTestFakeMotionEvent(m_connection->display, -1, iX, iY, CurrentTime);
  XSync(m_connection->display, False);
}

void XInput::Click(Button button, int iTimes) {
  // In one go, so that two clicks are a double click however busy the machine is.
  for (int i = 0; i < iTimes; ++i) {
    for (const int bDown : {True, False}) {
      XTestFakeButtonEvent(m_connection->display, static_cast<unsigned>(button), bDown,
                           CurrentTime);
    }
  }
  XSync(m_connection->display, False);
}

void XInput::Send(unsigned int uKey, bool bDown) {
  XTestFakeKeyEvent(m_connection->display, uKey, bDown ? True : False, CurrentTime);
}

unsigned int XInput::KeyOf(unsigned long symbol, bool& bShift) {
  auto* display = m_connection->display;
  const KeyCode key = XKeysymToKeycode(display, symbol);
  if (key == 0) throw std::runtime_error("The keyboard lacks a key that the test needs.");
  bShift = XkbKeycodeToKeysym(display, key, 0, 0) != symbol &&
           XkbKeycodeToKeysym(display, key, 0, 1) == symbol;
  return key;
}

void XInput::Key(const std::string& sKey, const std::string& sHeld) {
  bool bShift = false;
  const auto uHeld = sHeld.empty() ? 0 : KeyOf(XStringToKeysym(sHeld.c_str()), bShift);
  const auto uKey = KeyOf(XStringToKeysym(sKey.c_str()), bShift);
  if (uHeld) Send(uHeld, true);
  Send(uKey, true);
  Send(uKey, false);
  if (uHeld) Send(uHeld, false);
  XSync(m_connection->display, False);
}

void XInput::Type(char c) {
  bool bShift = false;
  // The symbols of Latin letters have their letters' numbers.
  const auto uKey =
      KeyOf(c == '\n' ? static_cast<KeySym>(XK_Return) : static_cast<unsigned char>(c), bShift);
  const auto uShift = XKeysymToKeycode(m_connection->display, XK_Shift_L);
  if (bShift) Send(uShift, true);
  Send(uKey, true);
  Send(uKey, false);
  if (bShift) Send(uShift, false);
  XSync(m_connection->display, False);
}

void XInput::Place(unsigned long window, int& iX, int& iY) {
  auto* display = m_connection->display;
  Window child = None;
  XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &iX, &iY, &child);
}

std::string XInput::Title(unsigned long window) {
  auto* display = m_connection->display;
  constexpr long kWords = 256;
  Atom type = None;
  int iFormat = 0;
  unsigned long uItems = 0;
  unsigned long uLeft = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(display, window, XInternAtom(display, "_NET_WM_NAME", False), 0, kWords, False,
                     XInternAtom(display, "UTF8_STRING", False), &type, &iFormat, &uItems, &uLeft,
                     &data);
  if (!data) return {};
  std::string sTitle(reinterpret_cast<const char*>(data), uItems);
  XFree(data);
  return sTitle;
}

bool XInput::WaitForWindowManager(int iMilliseconds) {
  auto* display = m_connection->display;
  const Window root = DefaultRootWindow(display);
  const Atom wanted = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
  XSelectInput(display, root, PropertyChangeMask);
  for (;;) {
    Atom type = None;
    int iFormat = 0;
    unsigned long uItems = 0;
    unsigned long uLeft = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, root, wanted, 0, 1, False, XA_WINDOW, &type, &iFormat, &uItems,
                       &uLeft, &data);
    if (data) XFree(data);
    if (uItems > 0) return true;
    pollfd waiting{ConnectionNumber(display), POLLIN, 0};
    if (XPending(display) == 0 && poll(&waiting, 1, iMilliseconds) <= 0) return false;
    XEvent event;
    XNextEvent(display, &event);
  }
}

void XInput::ListenForBells() {
  auto* display = m_connection->display;
  int iMajor = XkbMajorVersion;
  int iMinor = XkbMinorVersion;
  if (!XkbQueryExtension(display, nullptr, &m_connection->iKeyboardEvent, nullptr, &iMajor,
                         &iMinor)) {
    throw std::runtime_error("The display tells of no bells.");
  }
  XkbSelectEvents(display, XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
  XSync(display, False);
}

bool XInput::WaitForBell(int iMilliseconds) {
  auto* display = m_connection->display;
  // What has rung already is then on its way no longer.
  XSync(display, False);
  for (;;) {
    while (XPending(display) > 0) {
      XkbEvent event;
      XNextEvent(display, &event.core);
      if (event.type == m_connection->iKeyboardEvent && event.any.xkb_type == XkbBellNotify) {
        return true;
      }
    }
    // Little else is told on this connection, so each piece of news may take as long again.
    pollfd waiting{ConnectionNumber(display), POLLIN, 0};
    if (poll(&waiting, 1, iMilliseconds) <= 0) return false;
  }
}

}  // namespace orvane::console
