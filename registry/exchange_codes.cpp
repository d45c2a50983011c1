#include "registry/exchange_codes.h"

#include <algorithm>
#include <span>

namespace QvRefSystem {
namespace {

struct CodePair {
  int epsg;
  int mif;
};

// From facts/mapinfo_datum.csv: the datums that are live, stand there once, and with the ellipsoid
// that the registry gives them.
constexpr CodePair kDatums[] = {
    {1031, 1021}, {1052, 1024}, {1168, 1028}, {1201, 1025}, {6121, 153},  {6122, 151}, {6123, 1016},
    {6131, 131},  {6135, 77},   {6139, 83},   {6148, 150},  {6149, 1003}, {6150, 158}, {6156, 146},
    {6167, 117},  {6169, 118},  {6171, 33},   {6184, 89},   {6201, 1},    {6204, 3},   {6205, 2},
    {6207, 113},  {6209, 5},    {6210, 6},    {6211, 25},   {6214, 154},  {6216, 15},  {6218, 16},
    {6219, 121},  {6221, 17},   {6224, 23},   {6225, 24},   {6229, 76},   {6230, 28},  {6231, 108},
    {6232, 78},   {6236, 39},   {6239, 130},  {6240, 132},  {6244, 45},   {6245, 47},  {6248, 82},
    {6250, 136},  {6251, 49},   {6254, 36},   {6255, 127},  {6256, 52},   {6258, 115}, {6262, 54},
    {6263, 57},   {6265, 87},   {6269, 74},   {6271, 61},   {6274, 114},  {6275, 107}, {6277, 79},
    {6283, 116},  {6284, 1001}, {6289, 109},  {6292, 90},   {6297, 147},  {6299, 42},  {6309, 105},
    {6311, 106},  {6312, 128},  {6313, 1019}, {6314, 1000}, {6322, 103},  {6326, 104}, {6604, 137},
    {6605, 125},  {6612, 152},  {6614, 84},   {6618, 92},   {6620, 141},  {6658, 37},  {6668, 29},
    {6672, 22},   {6675, 34},   {6698, 46},   {6707, 9},    {6709, 8},    {6710, 10},  {6711, 11},
    {6712, 7},    {6713, 120},  {6714, 14},   {6716, 18},   {6717, 20},   {6719, 27},  {6722, 134},
    {6724, 43},   {6725, 44},   {6726, 48},   {6727, 56},   {6728, 80},   {6729, 81},  {6730, 88},
    {6732, 100},  {6734, 98},   {6735, 135},  {6736, 124},  {6740, 1012}, {6754, 155}, {6760, 102},
    {6807, 1002}, {6818, 1020}};

// From facts/mapinfo_ellipsoid.csv: the first number of each live ellipsoid.
constexpr CodePair kEllipsoids[] = {
    {1025, 56}, {7001, 9},  {7002, 13}, {7003, 2},  {7004, 10}, {7005, 35}, {7008, 7},
    {7010, 38}, {7011, 30}, {7012, 6},  {7013, 15}, {7014, 16}, {7015, 11}, {7016, 39},
    {7018, 17}, {7019, 0},  {7020, 22}, {7021, 41}, {7022, 4},  {7024, 3},  {7025, 27},
    {7027, 46}, {7030, 28}, {7032, 44}, {7033, 45}, {7036, 21}, {7041, 51}, {7043, 1},
    {7044, 40}, {7046, 14}, {7049, 31}, {7050, 24}, {7052, 12}, {7053, 23}, {7054, 52}};

static_assert(std::ranges::is_sorted(kDatums, {}, &CodePair::epsg));
static_assert(std::ranges::is_sorted(kEllipsoids, {}, &CodePair::epsg));

std::string Find(std::span<const CodePair> pairs, int epsg) {
  const auto found = std::ranges::lower_bound(pairs, epsg, {}, &CodePair::epsg);
  return found == pairs.end() || found->epsg != epsg ? "" : std::to_string(found->mif);
}

}  // namespace

std::string MifDatumCode(int epsgDatum) {
  return Find(kDatums, epsgDatum);
}

std::string MifEllipsoidCode(int epsgEllipsoid) {
  return Find(kEllipsoids, epsgEllipsoid);
}

}  // namespace QvRefSystem
