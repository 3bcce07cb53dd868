// What a monitor's EDID says of it, whatever stands in it.
#include "host/base/edid.h"

#include "fuzz/fuzz.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    EDIDBLOCK block = {}, read = {};
    memcpy(block.data(), data, size < block.size() ? size : block.size());
    const EDIDFACTS facts = ReadEdidFacts(block);
    FUZZ_CHECK(facts.maker.size() == 3 && facts.name.size() <= 13 && EdidSerialText(block).size() <= 13);
    FUZZ_CHECK(EdidProduct(block).size() == 7 && EdidKey(block).size() == 24);
    const EDIDBLOCK blank = BlankEdidSerial(block);
    FUZZ_CHECK(ReadEdidFacts(blank).serial == 0 && EdidSum(blank) == 0 && EdidSerialText(blank).empty());
    const std::string text(reinterpret_cast<const char *>(data), size);
    FUZZ_CHECK(ReadEdidHex(text, &read) || !EdidFault(read));
    return 0;
}
