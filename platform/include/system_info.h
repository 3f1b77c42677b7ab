/*
 * System information: named integers that describe the product. The function may be
 * called on any thread.
 */
#ifndef PLATFORM_SYSTEM_INFO_H
#define PLATFORM_SYSTEM_INFO_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Stores the integer named `key` in `*value` and returns 0. Returns a negative
 * error and leaves `*value` unchanged if there is no such integer.
 */
int system_info_get_custom_int(const char* key, int* value);

#ifdef __cplusplus
}
#endif

#endif
