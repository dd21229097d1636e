# SPDX-License-Identifier: Apache-2.0
"""The pictures, sounds and documents of the sample film."""
