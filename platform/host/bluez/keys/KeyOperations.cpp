// Converts Linux key codes to AV/C panel operations.
#include "platform/host/bluez/keys/KeyOperations.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <iterator>

namespace corvane::host {

namespace {

struct KeyOperation {
    int key;
    unsigned char operation;
};

constexpr KeyOperation KEY_OPERATIONS[] = {
    {KEY_SELECT, 0x00},    {KEY_UP, 0x01},          {KEY_DOWN, 0x02},
    {KEY_LEFT, 0x03},      {KEY_RIGHT, 0x04},       {KEY_MENU, 0x09},
    {KEY_PROGRAM, 0x0b},   {KEY_FAVORITES, 0x0c},   {KEY_EXIT, 0x0d},
    {KEY_0, 0x20},         {KEY_1, 0x21},           {KEY_2, 0x22},
    {KEY_3, 0x23},         {KEY_4, 0x24},           {KEY_5, 0x25},
    {KEY_6, 0x26},         {KEY_7, 0x27},           {KEY_8, 0x28},
    {KEY_9, 0x29},         {KEY_DOT, 0x2a},         {KEY_ENTER, 0x2b},
    {KEY_CHANNELUP, 0x30}, {KEY_CHANNELDOWN, 0x31}, {KEY_LAST, 0x32},
    {KEY_CONFIG, 0x34},    {KEY_INFO, 0x35},        {KEY_HELP, 0x36},
    {KEY_PAGEUP, 0x37},    {KEY_PAGEDOWN, 0x38},    {KEY_POWER2, 0x40},
    {KEY_VOLUMEUP, 0x41},  {KEY_VOLUMEDOWN, 0x42},  {KEY_MUTE, 0x43},
    {KEY_PLAYCD, 0x44},    {KEY_PLAY, 0x44},        {KEY_STOPCD, 0x45},
    {KEY_STOP, 0x45},      {KEY_PAUSECD, 0x46},     {KEY_PAUSE, 0x46},
    {KEY_RECORD, 0x47},    {KEY_REWIND, 0x48},      {KEY_FASTFORWARD, 0x49},
    {KEY_EJECTCD, 0x4a},   {KEY_NEXTSONG, 0x4b},    {KEY_PREVIOUSSONG, 0x4c},
    {KEY_ANGLE, 0x50},     {KEY_SUBTITLE, 0x51},    {KEY_F1, 0x71},
    {KEY_F2, 0x72},        {KEY_F3, 0x73},          {KEY_F4, 0x74},
    {KEY_F5, 0x75},        {KEY_BLUE, 0x71},        {KEY_RED, 0x72},
    {KEY_GREEN, 0x73},     {KEY_YELLOW, 0x74},
};

}  // namespace

std::optional<unsigned char> operationOfKey(int key) {
    const auto* const row = std::ranges::find(KEY_OPERATIONS, key, &KeyOperation::key);
    return row == std::end(KEY_OPERATIONS) ? std::nullopt : std::optional(row->operation);
}

}  // namespace corvane::host
