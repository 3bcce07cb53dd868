// The reservation page without the rest of the panel, filled as a user would fill it; and the fixture of all tests that
// have to do with reservations.
#pragma once

#include "support/plugin_session.h"

#include <string>
#include <vector>

// From "2006/06/10 20:00".
SYSTEMTIME ParseMoment(const std::string &moment);

// A page of the test's own thread, in a window that is never shown. It loads the file, as every page does.
class ReservationPage {
public:
    ReservationPage();
    ~ReservationPage();
    ReservationPage(const ReservationPage &) = delete;
    ReservationPage &operator=(const ReservationPage &) = delete;

    HWND Window() const { return m_page; }

    // Makes the plug-in believe that this is its panel, open on this page or on another one.
    void BeThePanel(bool onPage);

private:
    HWND m_parent;
    HWND m_page;
};

// Fills the entry of a page. Moments as "2006/06/10 20:00"; the channel, in UTF-8, must be among those that it offers.
void EnterReservation(HWND page, const std::string &start, const std::string &end, const std::string &channel);

// The list's rows, their cells joined by '|', each with its item data in front: "0: 2006/06/10|20:00|...".
Lines ReservationRows(HWND page);

// One reservation as an INI section, for a file made by hand; texts in UTF-8.
std::string Section(int n, const std::string &start, const std::string &end, const std::string &channel,
                    const std::string &model = "NRV-PA1", int monitor = 0);

// A section of the file "ontimer.ini" as its lines with the header in front, in UTF-8; empty when it is not there.
Lines SectionLines(int n);

// Whether a slot of the table is in use.
bool IsUsed(int n);

// What the prompt shows: its text and the identifiers of the buttons that can be seen. The question and the notice.
std::string PromptShown();
std::string QuestionShown();
std::string NoticeShown();

// Two monitors, "NRV-PA1" and "NRV-PA2", with all inputs and a tuner (channel names "1", "3" and an empty one), which
// show input 3 and channel 777. Pauses are skipped, and stand in the host's log.
class ReservationTest : public HostTest {
protected:
    ReservationTest();
    ~ReservationTest() override;

    // Sets the clock.
    static void SetMinute(const std::string &moment);

    // Writes "ontimer.ini" and loads it, as the page does.
    static void LoadFile(const std::string &bytes);

    // Enters a reservation on a page of its own.
    static int Add(const std::string &start, const std::string &end, const std::string &channel);

    // One second's checks. Result: what the monitors received.
    Lines Tick();

    // A button of the prompt pressed; the same result.
    Lines Press(int button);
};
