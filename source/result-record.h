/* What the library does to the exported result record in more than one place. */
#ifndef VAULTPAD_SOURCE_RESULT_RECORD_H
#define VAULTPAD_SOURCE_RESULT_RECORD_H

#include <vaultpad/vaultpad.h>

namespace vaultpad {

/* Says "no result". The bytes of an earlier key and data stay in place, which is intended. */
inline void clearAnswerWords(AppResult& result) {
    result.enc_key_len = 0;
    result.enc_data_len = 0;
    result.ta_value = 0;
}

}  // namespace vaultpad

#endif
