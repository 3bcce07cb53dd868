// The file that keeps capability strings: as it was written, or with anything done to it.
#include "host/windows_monitors/kept_text.h"

#include "fuzz/fuzz.h"

static std::vector<KEPTCAPABILITIES> Entries(FuzzInput *input)
{
    std::vector<KEPTCAPABILITIES> entries;
    for (size_t count = input->Below(4); count > 0; --count) {
        const std::vector<uint8_t> bytes = input->Bytes(input->Below(40));
        entries.push_back({"K" + std::to_string(count), std::string(bytes.begin(), bytes.end())});
    }
    return entries;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::vector<KEPTCAPABILITIES> read;
    ReadKeptText(std::string(reinterpret_cast<const char *>(data), size), &read);

    FuzzInput input(data, size);
    const std::vector<KEPTCAPABILITIES> entries = Entries(&input);
    std::string text = WriteKeptText(entries);
    FUZZ_CHECK(ReadKeptText(text, &read) && read.size() == entries.size());
    for (size_t n = 0; n < read.size(); ++n)
        FUZZ_CHECK(read[n].key == entries[n].key && read[n].text == entries[n].text);
    const uint8_t change = input.Number<uint8_t>();
    char &hit = text[input.Below(text.size())];
    hit = static_cast<char>(hit ^ change);
    FUZZ_CHECK(ReadKeptText(text, &read) == (change == 0));
    FUZZ_CHECK(change == 0 || read.empty());
    return 0;
}
