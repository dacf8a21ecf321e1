#include "platform/uuid_text.h"

#include <uuid/uuid.h>

std::string newUuidText() {
    uuid_t id;
    uuid_generate(id);
    char text[kUuidTextLength + 1];
    uuid_unparse_upper(id, text);
    return std::string(text, kUuidTextLength);
}
