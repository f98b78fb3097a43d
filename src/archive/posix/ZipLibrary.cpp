// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The zip library, loaded when the first log is archived. A call raises std::runtime_error if the
// machine lacks it.

#include <zip.h>

#include "base/posix/LateLibrary.h"

namespace {

logbook::posix::LateLibrary& Zip() {
  static logbook::posix::LateLibrary library(LOGBOOK_ZIP_LIBRARY);
  return library;
}

}  // namespace

// clang-format off
#define LATE(result, name, parameters, arguments) \
  LOGBOOK_LATE_ROUTINE(Zip(), result, name, parameters, arguments)

LATE(int, zip_close, (zip_t* zip), (zip))
LATE(void, zip_discard, (zip_t* zip), (zip))
LATE(zip_int64_t, zip_dir_add, (zip_t* zip, const char* name, zip_flags_t flags),
     (zip, name, flags))
LATE(zip_int64_t, zip_file_add,
     (zip_t* zip, const char* name, zip_source_t* source, zip_flags_t flags),
     (zip, name, source, flags))
LATE(zip_int64_t, zip_name_locate, (zip_t* zip, const char* name, zip_flags_t flags),
     (zip, name, flags))
LATE(zip_t*, zip_open_from_source, (zip_source_t* source, int flags, zip_error_t* error),
     (source, flags, error))
LATE(zip_int64_t, zip_get_num_entries, (zip_t* zip, zip_flags_t flags), (zip, flags))
LATE(const char*, zip_get_name, (zip_t* zip, zip_uint64_t index, zip_flags_t flags),
     (zip, index, flags))
LATE(int, zip_delete, (zip_t* zip, zip_uint64_t index), (zip, index))
LATE(int, zip_register_progress_callback_with_state,
     (zip_t* zip, double precision, zip_progress_callback callback, void (*end)(void*),
      void* state),
     (zip, precision, callback, end, state))
LATE(int, zip_set_file_compression,
     (zip_t* zip, zip_uint64_t index, zip_int32_t method, zip_uint32_t flags),
     (zip, index, method, flags))
LATE(int, zip_file_set_mtime, (zip_t* zip, zip_uint64_t index, time_t time, zip_flags_t flags),
     (zip, index, time, flags))
LATE(int, zip_file_set_external_attributes,
     (zip_t* zip, zip_uint64_t index, zip_flags_t flags, zip_uint8_t system,
      zip_uint32_t attributes),
     (zip, index, flags, system, attributes))
LATE(int, zip_file_extra_field_delete_by_id,
     (zip_t* zip, zip_uint64_t index, zip_uint16_t id, zip_uint16_t field, zip_flags_t flags),
     (zip, index, id, field, flags))
LATE(int, zip_file_extra_field_set,
     (zip_t* zip, zip_uint64_t index, zip_uint16_t id, zip_uint16_t field,
      const zip_uint8_t* bytes, zip_uint16_t size, zip_flags_t flags),
     (zip, index, id, field, bytes, size, flags))
LATE(void, zip_stat_init, (zip_stat_t* stat), (stat))

LATE(zip_error_t*, zip_get_error, (zip_t* zip), (zip))
LATE(void, zip_error_init, (zip_error_t* error), (error))
LATE(void, zip_error_fini, (zip_error_t* error), (error))
LATE(void, zip_error_set, (zip_error_t* error, int code, int system), (error, code, system))
LATE(int, zip_error_code_zip, (const zip_error_t* error), (error))
LATE(int, zip_error_code_system, (const zip_error_t* error), (error))
LATE(int, zip_error_system_type, (const zip_error_t* error), (error))
LATE(const char*, zip_error_strerror, (zip_error_t* error), (error))
LATE(zip_int64_t, zip_error_to_data, (const zip_error_t* error, void* data, zip_uint64_t size),
     (error, data, size))

LATE(zip_source_t*, zip_source_function,
     (zip_t* zip, zip_source_callback callback, void* state), (zip, callback, state))
LATE(zip_source_t*, zip_source_function_create,
     (zip_source_callback callback, void* state, zip_error_t* error), (callback, state, error))
LATE(void, zip_source_free, (zip_source_t* source), (source))
LATE(zip_int64_t, zip_source_seek_compute_offset,
     (zip_uint64_t offset, zip_uint64_t length, void* data, zip_uint64_t size,
      zip_error_t* error),
     (offset, length, data, size, error))
