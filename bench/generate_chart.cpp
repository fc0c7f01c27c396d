// Makes a database file with a generated chart, to try the product with any number of accounts.
//
//   generate_chart FILE [--accounts N] [--top N] [--fan-out N] [--period N]... [--documents N] [--relations
//   N]
//                  [--objects N]

#include <charconv>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "db/schema.h"
#include "support/generated_chart.h"

namespace {

std::int32_t numberOf(const char* text) {
  std::int32_t number = 0;
  const char* const end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, number);
  if (error != std::errc() || stop != end || number < 0) {
    throw std::invalid_argument(std::string(text) + " isn't a valid number");
  }
  return number;
}

ledgertree::bench::ChartShape shapeOf(int count, char** arguments) {
  ledgertree::bench::ChartShape shape;
  for (int place = 2; place < count; place += 2) {
    const std::string name = arguments[place];
    if (place + 1 == count) throw std::invalid_argument(name + " needs a number");
    const std::int32_t number = numberOf(arguments[place + 1]);
    if (name == "--accounts")
      shape.accounts = number;
    else if (name == "--top")
      shape.topLevel = number;
    else if (name == "--fan-out")
      shape.fanOut = number;
    else if (name == "--period")
      shape.periods.push_back(number);
    else if (name == "--documents")
      shape.documents = number;
    else if (name == "--relations")
      shape.relations = number;
    else if (name == "--objects")
      shape.objects = number;
    else
      throw std::invalid_argument("unknown option " + name);
  }
  return shape;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::cerr
        << "usage: generate_chart FILE [--accounts N] [--top N] [--fan-out N] [--period N]... [--documents N]"
           " [--relations N] [--objects N]\n";
    return 2;
  }
  try {
    if (std::filesystem::exists(arguments[1])) throw std::invalid_argument("the file exists already");
    const auto shape = shapeOf(count, arguments);
    SQLite::Database database(arguments[1], SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    ledgertree::db::openSchema(database);
    ledgertree::bench::generateChart(database, shape);
  } catch (const std::exception& failure) {
    std::cerr << "generate_chart: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
