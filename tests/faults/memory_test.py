"""Memory that runs out."""

import resource
import unittest
from pathlib import Path

from system_case import SystemTest

MIB = 1024 * 1024


class MemoryTest(SystemTest):
    def limit_memory(self, more: int) -> None:
        """Lets the running application reserve so many bytes more, as the harness sees it now."""
        status = Path(f"/proc/{self.application.process.pid}/status").read_text()
        used = next(int(line.split()[1]) * 1024 for line in status.splitlines() if line.startswith("VmSize"))
        resource.prlimit(self.application.process.pid, resource.RLIMIT_AS, (used + more, used + more))

    def test_a_clip_that_is_longer_than_memory_lasts_ends_nothing(self) -> None:
        self.write_tones("sexy", 440, seconds=600)  # 220 MiB once it is decoded
        self.start_sound()
        self.start_laptop()
        self.start_on_main_view()
        self.limit_memory(100 * MIB)
        self.listen()
        self.slap_until_counted(3)
        self.assertEqual(self.application.close_window(), 0)


if __name__ == "__main__":
    unittest.main()
