// The dxva2.dll beside the program: the stand-in, for programs that are linked with this.
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/windows_monitors/monitor_api.h"

std::wstring MonitorLibraryPath()
{
    return Widen(ProgramFolder()) + L"\\dxva2.dll";
}
