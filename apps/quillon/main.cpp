#include "apps/quillon/begin_program.h"
#include "apps/quillon/command_line.h"
#include "apps/quillon/console.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/stop.h"

#include <exception>
#include <new>

#include <quillon/sections/error.h>

using namespace quillon::app;

int main(int argc, char** argv) {
  Order order = parse_command_line(begin_program(argc, argv));
  Console console(order.options.verbose);
  try {
    if (!order.mistake.empty()) {
      console.message("quillon: " + order.mistake);
      return exit_usage;
    }
    catch_stop_signals();
    if (order.options.seconds > 0) stop_after(std::chrono::duration<double>(order.options.seconds));
    console.print(order.text);
    const Exit exit = order.run ? order.run(order.options, console) : exit_ok;
    console.flush();
    console.sum_up_troubles();
    return exit;
  } catch (const std::bad_alloc&) {
    console.message("quillon: out of memory");
  } catch (const Failure& failure) {
    console.message(failure.what());
  } catch (const quillon::error& e) {
    console.message(e.what());
  } catch (const std::exception& e) {
    console.message(std::string("quillon: ") + e.what());
  }
  return exit_bad_input;
}
