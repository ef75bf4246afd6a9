#pragma once

// The script interface of the media player's window, for tests, scripts and assistive tools in
// other processes. Find the window by its class, register the message by its name, and send
//     SendMessageW(window, RegisterWindowMessageW(kMessageName), number, value)
// Reading a property answers its value. A command or a setting answers 1 when its number is known.
// Times are milliseconds. Unknown numbers answer 0.
namespace nqp::platform::script {

inline constexpr wchar_t kWindowClass[] = L"nqp.MediaPlayer";
inline constexpr wchar_t kMessageName[] = L"nqp.MediaPlayer";

// Properties to read; the value sent along is not used.
inline constexpr int kPlayState = 1;        // 0 stopped, 1 paused, 2 playing
inline constexpr int kCurrentPosition = 2;  // -1 with nothing loaded
inline constexpr int kDuration = 3;         // 0 with nothing loaded
inline constexpr int kVolume = 4;           // hundredths of a decibel, -10000..0
inline constexpr int kRate = 5;             // thousandths, 1000 is normal speed
inline constexpr int kReadiness = 6;        // not 0 when a clip is loaded
inline constexpr int kVisible = 7;          // 1 when the control is shown
inline constexpr int kDisplaySize = 8;      // 3 full screen, 0 in the window
inline constexpr int kFramesDrawn = 9;      // -1 when the platform does not count them

// Properties to set: the number of the property plus 100; the value is in the same unit.
inline constexpr int kSetCurrentPosition = 100 + kCurrentPosition;
inline constexpr int kSetVolume = 100 + kVolume;
inline constexpr int kSetRate = 100 + kRate;
inline constexpr int kSetDisplaySize = 100 + kDisplaySize;

// Commands.
inline constexpr int kPlay = 120;
inline constexpr int kPause = 121;
inline constexpr int kShowDialog = 122;  // value: 1 statistics, 2 filter properties

}  // namespace nqp::platform::script
