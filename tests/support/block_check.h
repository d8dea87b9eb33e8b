#pragma once

/// The block check of a frame from its head to its tail: the low byte of the sum of all bytes, in
/// two upper-case digits. For QByteArray and std::string alike.
template <typename Bytes>
Bytes blockCheckOf(const Bytes &headToTail)
{
    unsigned sum = 0;
    for (const char byte : headToTail) {
        sum += static_cast<unsigned char>(byte);
    }
    const char digits[] = "0123456789ABCDEF";
    Bytes check(2, digits[sum & 15]);
    check[0] = digits[sum >> 4 & 15];
    return check;
}
