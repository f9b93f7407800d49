// Blocks that cross the bus in pieces: the assembler must hand over exactly
// the block its header announces, or nothing.
#include "platform/ipc/windowbus_p.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

using vx::detail::FrameAssembler;
using vx::detail::FrameHeader;
using vx::detail::kFramePiece;

std::vector<char> Piece(std::uint32_t dataLength, std::uint32_t offset, std::size_t bytes, char fill)
{
    FrameHeader h{};
    h.magic = vx::detail::kBusMagic;
    h.kind = static_cast<std::uint32_t>(vx::detail::FrameKind::Send);
    h.hwnd = 7;
    h.message = WM_COPYDATA;
    h.sequence = 1;
    h.dataLength = dataLength;
    h.offset = offset;
    std::vector<char> datagram(sizeof h + bytes, fill);
    std::memcpy(datagram.data(), &h, sizeof h);
    return datagram;
}

TEST(FrameAssembler, ABlockInPiecesIsWholeOrDropped)
{
    const std::uint32_t length = kFramePiece + 31;
    FrameAssembler assembler;
    FrameHeader header{};
    std::vector<char> data;
    std::string fault;

    auto first = Piece(length, 0, kFramePiece, 'a');
    auto last = Piece(length, kFramePiece, 31, 'b');
    EXPECT_EQ(assembler.Take(100, first.data(), first.size(), header, data, fault), FrameAssembler::Result::Piece);
    ASSERT_EQ(assembler.Take(100, last.data(), last.size(), header, data, fault), FrameAssembler::Result::Message);
    ASSERT_EQ(data.size(), length);
    EXPECT_EQ(header.dataLength, length);
    EXPECT_EQ(data.front(), 'a');
    EXPECT_EQ(data.back(), 'b');

    // A following piece that announces another length would end the block
    // short of what the first piece said: the block goes.
    first = Piece(length, 0, kFramePiece, 'a');
    auto shorter = Piece(kFramePiece, kFramePiece, 0, 'b');
    EXPECT_EQ(assembler.Take(100, first.data(), first.size(), header, data, fault), FrameAssembler::Result::Piece);
    EXPECT_EQ(assembler.Take(100, shorter.data(), shorter.size(), header, data, fault),
              FrameAssembler::Result::Dropped);
    EXPECT_FALSE(fault.empty());
    // Nothing of it is left to complete.
    EXPECT_EQ(assembler.Take(100, last.data(), last.size(), header, data, fault), FrameAssembler::Result::Dropped);
}

} // namespace
