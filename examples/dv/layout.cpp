#include "dv/layout.h"

namespace dv {

namespace {

// The picture is cut into super blocks of 27 macroblocks, five in a row. The five macroblocks of a segment have one
// number in five super blocks far from each other, so that busy parts of the picture share their bits with quiet ones:
// macroblock m is of this super block column, and this many super block rows below a row that goes with the segment.
constexpr int superColumns[5] = {2, 1, 3, 0, 4}, superRows[5] = {2, 6, 8, 0, 4};

// Columns of height macroblocks, numbered down the first, up the second, and so on.
struct Serpentine {
  int column, row;
  Serpentine(int number, int height) : column(number / height), row(number % height) {
    if (column % 2 != 0) row = height - 1 - row;
  }
};

Place place420(int superColumn, int superRow, int number) {
  const Serpentine at(number, 3);
  return {16 * (9 * superColumn + at.column), 16 * (3 * superRow + at.row)};
}

// 50 Mb/s: the channels have the super block rows in turn.
Place place422(int channel, int superColumn, int superRow, int number) {
  const Serpentine at(number, 3);
  return {16 * (9 * superColumn + at.column), 8 * (3 * (2 * superRow + channel) + at.row)};
}

// 22 1/2 macroblocks in a row: super blocks have four and a half columns, and share every other column with a
// neighbour. The half column at the right is made of macroblocks of 16x16.
Place place411(int superColumn, int superRow, int number) {
  constexpr int firstColumns[5] = {0, 4, 9, 13, 18}, edgeColumn = 22;
  const Serpentine at(superColumn % 2 != 0 ? number + 3 : number, 6);
  const int column = firstColumns[superColumn] + at.column;
  if (column == edgeColumn) return {32 * edgeColumn, 8 * (6 * superRow + 2 * at.row), true};
  return {32 * column, 8 * (6 * superRow + at.row)};
}

// 100 Mb/s. Super blocks are numbered row by row, and a segment and the ones behind it have the same number in super
// blocks two rows apart (one row in 1080/50i) until all rows have had their turn. Channels 0 and 1 have the left and
// the right half of the super blocks, 2 and 3 those in the rows between, or in the next frame.
constexpr int bottomEdge1080 = 1072;

// 80 by 67 1/2 macroblocks. Super blocks as for 90 by 60 begin at macroblock row 4; their last ten columns, which would
// lie beyond the picture's edge, fill the rows above and below instead.
Place place1080i60(int channel, int segment, int m) {
  const int superRow = (4 * channel + segment / 135 + 2 * segment + superRows[m]) % 10, number = segment / 5 % 27;
  const int column = 18 * superColumns[m] + 9 * (channel % 2) + number % 9;
  const int row = 2 * (3 * superRow + number / 9) + channel / 2;
  if (column < 80) return {16 * column, 16 * (4 + row)};
  const int spare = column - 80;
  if (row < 32) return {16 * (row / 4 * 10 + spare), 16 * (row % 4)};
  if (row < 56) return {16 * ((row - 32) / 3 * 10 + spare), 16 * (64 + (row - 32) % 3)};
  return {32 * ((row - 56) * 10 + spare), bottomEdge1080, true};
}

// 90 by 67 1/2 macroblocks: the first row and the half row at the bottom have a DIF sequence of their own.
Place place1080i50(int channel, int segment, int m) {
  constexpr int segments = 11 * 27;
  if (segment >= segments) {
    const int number = 27 * m + segment - segments;
    if (number < 90) return {16 * number, 0};
    return {32 * (number - 90), bottomEdge1080, true};
  }
  const int superRow = (4 * channel + segment + superRows[m]) % 11, number = segment / 11;
  return {16 * (18 * superColumns[m] + 9 * (channel % 2) + number % 9),
          16 * (1 + 2 * (3 * superRow + number / 9) + channel / 2)};
}

// 60 by 45 macroblocks: super blocks have four and a half rows.
Place place720(int channel, int segment, int m) {
  const int superRow = (4 * channel + segment / 135 + 2 * segment + superRows[m]) % 10;
  const int number = segment / 5 % 27 + (superRow % 2 != 0 ? 3 : 0);
  return {16 * (12 * superColumns[m] + 6 * (channel % 2) + number % 6), 16 * (9 * superRow / 2 + number / 6)};
}

// How many sequences of a channel hold video.
int usedSequences(const System& system, int channel) {
  if (!system.highDefinition || system.sequences == 10) return system.sequences;
  return system.height == 720 ? 10 : channel == 0 ? 12 : 11;
}

}  // namespace

std::vector<SegmentPlace> segmentPlaces(const System& system, bool secondOfPair) {
  std::vector<SegmentPlace> places;
  for (int channel = 0; channel < system.channels; ++channel)
    for (int sequence = 0; sequence < usedSequences(system, channel); ++sequence)
      for (int number = 0; number < 27; ++number) {
        SegmentPlace place;
        // Behind six blocks of header, subcode and VAUX come nine groups of an audio block and 15 video blocks.
        const int block = 6 + number / 3 * 16 + 1 + number % 3 * 5;
        place.offset =
            std::size_t(channel * system.sequences + sequence) * difSequenceBytes + std::size_t(block) * difBlockBytes;
        place.sequence = sequence;
        place.firstBlock = 5 * number;
        for (int m = 0; m < 5; ++m) {
          Place& mb = place.macroblocks[m];
          const int column = superColumns[m], row = (sequence + superRows[m]) % system.sequences;
          const int segment = 27 * sequence + number;
          if (system.height == 720) mb = place720(secondOfPair ? channel + 2 : channel, segment, m);
          else if (system.width == 1280) mb = place1080i60(channel, segment, m);
          else if (system.width == 1440) mb = place1080i50(channel, segment, m);
          else if (system.sampling == Sampling::C411) mb = place411(column, row, number);
          else if (system.sampling == Sampling::C420) mb = place420(column, row, number);
          else mb = place422(channel, column, row, number);
        }
        places.push_back(place);
      }
  return places;
}

}  // namespace dv
